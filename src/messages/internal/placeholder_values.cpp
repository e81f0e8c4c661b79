#include "messages/internal/placeholder_values.h"

#include "com/collection.h"
#include "com/error.h"

namespace qv::internal {

void CheckInnerArrayBase(const SafeArray& values) {
  if (values.empty()) return;
  const Variant& first = values[0];
  if (first.IsArray() && first.ToArray().LBound() != 0) {
    throw Error::Object1000(
        "Der Array im Parameter ValuePlatzHalter ist nicht 0-basierent.");
  }
}

Variant PlaceholderValue(const SafeArray& values, int32_t n) {
  Variant value;
  if (values.empty()) return value;
  const Variant& first = values[0];
  if (first.IsObject()) {
    if (auto list = first.ToObjectAs<Collection>();
        list && n <= list->Count()) {
      value = list->Item(Variant(n));
    }
  } else if (first.IsArray()) {
    const SafeArray& inner = first.ToArray();
    if (n - 1 <= inner.UBound()) value = inner[n - 1];
  }
  if (value.IsEmpty() && n <= static_cast<int32_t>(values.size())) {
    value = values[n - 1];
  }
  return value;
}

}  // namespace qv::internal
