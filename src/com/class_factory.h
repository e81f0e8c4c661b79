// The class factory: every public creatable class registers itself once
// under its ProgID ("qvglobal10.<ClassName>") and is then created by name.
// Registration runs in static initialisers of the library (QV_REGISTER_CLASS
// in the class's source file); lookups compare ProgIDs without regard to
// letter case.
// Threads: classes register while the library (or a module that adds classes)
// is loaded, before other threads create objects; from then on lookups and
// CreateObject only read the registry and may run on any number of threads. The
// registry takes no lock, so registering while other threads create objects is
// not safe.
#ifndef QVGLOBAL_COM_CLASS_FACTORY_H_
#define QVGLOBAL_COM_CLASS_FACTORY_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "com/class_info.h"
#include "com/object.h"

namespace qv {

inline constexpr std::string_view kProgIdPrefix = "qvglobal10.";

struct ClassRegistration {
  std::string progid;
  std::function<ObjectPtr()> create;
  const ClassInfo* info;
};

// Registers a class; a second registration of the same ProgID replaces the
// first. Returns true so that it can initialise a static.
bool RegisterClass(std::string progid, std::function<ObjectPtr()> create,
                   const ClassInfo& info);

// Creates an object by ProgID; raises 429 "ActiveX component can't create
// object" for a ProgID that is not registered.
ObjectPtr CreateObject(std::string_view progid);

template <class T>
std::shared_ptr<T> CreateObjectAs(std::string_view progid) {
  return std::dynamic_pointer_cast<T>(CreateObject(progid));
}

// All registered classes, sorted by ProgID.
std::vector<ClassRegistration> RegisteredClasses();

// The registration of one ProgID, or nullptr.
const ClassRegistration* FindClass(std::string_view progid);

template <class T>
bool RegisterDispatchable(std::string_view class_name) {
  return RegisterClass(
      std::string(kProgIdPrefix) + std::string(class_name),
      [] { return ObjectPtr(std::make_shared<T>()); }, T::StaticClassInfo());
}

}  // namespace qv

// Registers the creatable class `Class` (derived from qv::Dispatchable) under
// the ProgID "qvglobal10.Class". Put it in the class's source file.
#define QV_REGISTER_CLASS(Class)                                \
  [[maybe_unused]] static const bool qv_registered_##Class##_ = \
      ::qv::RegisterDispatchable<Class>(#Class)

#endif  // QVGLOBAL_COM_CLASS_FACTORY_H_
