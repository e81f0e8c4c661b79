#include "shell/internal/host_collection.h"

#include <utility>

#include "com/error.h"

namespace qv::host {

const ObjectPtr& Require(const ObjectPtr& object) {
  if (!object) throw Error::Runtime(err::kObjectVariableNotSet);
  return object;
}

ObjectPtr GetObject(const ObjectPtr& owner, std::string_view member,
                    std::vector<Variant> args) {
  const Variant result = Require(owner)->Invoke(member, InvokeKind::kGet, args);
  return Require(result.IsEmpty() ? nullptr : result.ToObject());
}

ObjectPtr ItemOf(const ObjectPtr& owner, std::string_view collection,
                 const Variant& key) {
  return GetObject(GetObject(owner, collection), "Item", {key});
}

std::vector<ObjectPtr> ItemsOf(const ObjectPtr& owner,
                               std::string_view collection) {
  const ObjectPtr items = GetObject(owner, collection);
  const int32_t count = items->Get("Count").ToLong();
  std::vector<ObjectPtr> result;
  for (int32_t i = 0; i < count; ++i) {
    result.push_back(GetObject(items, "Item", {i}));
  }
  return result;
}

}  // namespace qv::host
