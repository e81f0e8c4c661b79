#include "com/class_factory.h"

#include <algorithm>
#include <map>

#include "com/error.h"
#include "com/text.h"

namespace qv {
namespace {

// Keyed by the lower-cased ProgID. A function-local static, so that it is
// ready for the static initialisers that register the classes.
std::map<std::string, ClassRegistration>& Registry() {
  static std::map<std::string, ClassRegistration> registry;
  return registry;
}

}  // namespace

bool RegisterClass(std::string progid, std::function<ObjectPtr()> create,
                   const ClassInfo& info) {
  std::string key = text::LCase(progid);
  Registry()[key] =
      ClassRegistration{std::move(progid), std::move(create), &info};
  return true;
}

const ClassRegistration* FindClass(std::string_view progid) {
  auto& registry = Registry();
  auto it = registry.find(text::LCase(progid));
  return it == registry.end() ? nullptr : &it->second;
}

ObjectPtr CreateObject(std::string_view progid) {
  const ClassRegistration* reg = FindClass(progid);
  if (reg == nullptr) throw Error::Runtime(err::kCantCreateObject);
  return reg->create();
}

std::vector<ClassRegistration> RegisteredClasses() {
  std::vector<ClassRegistration> all;
  for (const auto& [key, reg] : Registry()) all.push_back(reg);
  return all;
}

}  // namespace qv
