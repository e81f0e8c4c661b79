// qv::Object is the base of every public class of the library and of every
// object a host hands in (a grid, a toolbar, a form written elsewhere). Any
// member is reached by name through Invoke; classes of the library describe
// their members once in a ClassInfo (see dispatch.h), hosts may override
// Invoke instead. Objects are always held by std::shared_ptr.
// Threads: objects take no locks: an object is used by one thread at a time;
// different objects may be used on different threads at once. Holding an object
// by std::shared_ptr from several threads is safe (the reference count is
// atomic); calling it from several threads at once is not.
#ifndef QVGLOBAL_COM_OBJECT_H_
#define QVGLOBAL_COM_OBJECT_H_

#include <memory>
#include <string_view>
#include <vector>

#include "com/class_info.h"
#include "com/event_source.h"
#include "com/variant.h"

namespace qv {

class Object : public std::enable_shared_from_this<Object> {
 public:
  virtual ~Object() = default;

  // The dispatch interface of the object's class. Host objects that
  // override Invoke may keep the default, an interface without members.
  virtual const ClassInfo& GetClassInfo() const;

  // Invokes a member by name (letter case ignored). Raises 438 for an
  // unknown member or an unsupported kind, 450 for a wrong argument count.
  // A property get may be invoked as a method and the other way round.
  virtual Variant Invoke(std::string_view name, InvokeKind kind, Args args);
  Variant InvokeById(int32_t id, InvokeKind kind, Args args);
  // Calls this object as a sink of `event`: invokes the member of the
  // event's name as a method. Hosts whose callees cannot see by-reference
  // parameters in their own signature override it to pass the ones the
  // event marks (event.IsByRef) by reference.
  virtual Variant InvokeEvent(const EventInfo& event, Args args);

  // The event sinks of an object with an outgoing interface; nullptr for
  // objects that raise no events.
  virtual EventSource* events() { return nullptr; }

  // Convenience forms of Invoke for C++ callers.
  Variant Call(std::string_view name, std::vector<Variant> args = {});
  Variant Get(std::string_view name, std::vector<Variant> args = {});
  void Let(std::string_view name, Variant value);
  void Set(std::string_view name, ObjectPtr value);

 protected:
  // Runs a member found in the class's interface.
  Variant InvokeMember(const MemberInfo& member, InvokeKind kind, Args args);
};

// Base for the library's classes: T supplies `static ClassInfo
// BuildClassInfo()`, which runs once per process.
template <class T>
class Dispatchable : public Object {
 public:
  const ClassInfo& GetClassInfo() const override { return StaticClassInfo(); }
  static const ClassInfo& StaticClassInfo() {
    static const ClassInfo info = T::BuildClassInfo();
    return info;
  }
};

}  // namespace qv

#endif  // QVGLOBAL_COM_OBJECT_H_
