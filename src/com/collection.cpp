#include "com/collection.h"

#include <algorithm>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"

namespace qv {

void Collection::Add(Variant item, std::optional<std::string> key) {
  if (key) {
    std::string folded = text::LCase(*key);
    const bool taken =
        std::any_of(items_.begin(), items_.end(),
                    [&](const Entry& e) { return e.key == folded; });
    if (taken) throw Error::Runtime(err::kKeyAlreadyAssociated);
    key = std::move(folded);
  }
  items_.push_back({std::move(item), std::move(key)});
}

size_t Collection::Locate(const Variant& index) const {
  if (const std::string* key = index.AsString()) {
    const std::string folded = text::LCase(*key);
    auto it = std::find_if(items_.begin(), items_.end(),
                           [&](const Entry& e) { return e.key == folded; });
    if (it == items_.end()) throw Error::Runtime(err::kInvalidProcedureCall);
    return static_cast<size_t>(it - items_.begin());
  }
  const int32_t position = index.ToLong();
  if (position < 1 || position > Count()) {
    throw Error::Runtime(err::kSubscriptOutOfRange);
  }
  return static_cast<size_t>(position - 1);
}

const Variant& Collection::Item(const Variant& index) const {
  return items_[Locate(index)].item;
}

void Collection::Remove(const Variant& index) {
  items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(Locate(index)));
}

ClassInfo Collection::BuildClassInfo() {
  return ClassBuilder<Collection>("Collection")
      .Method("Add",
              [](Collection& c, Variant item, Variant key) {
                if (key.IsEmpty()) return c.Add(std::move(item));
                c.Add(std::move(item), key.ToString());
              },
              {Variant()})
      .Get("Count", &Collection::Count)
      .Method("Item",
              [](Collection& c, Variant index) { return c.Item(index); })
      .Method("Remove", &Collection::Remove)
      .Build();
}

namespace {
[[maybe_unused]] const bool kRegistered = RegisterClass(
    "VBA.Collection", [] { return ObjectPtr(std::make_shared<Collection>()); },
    Collection::StaticClassInfo());
}  // namespace

}  // namespace qv
