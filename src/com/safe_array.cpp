#include "com/safe_array.h"

#include "com/error.h"

namespace qv {

SafeArray SafeArray::WithSize(size_t count, int32_t lbound) {
  return SafeArray(std::vector<Variant>(count), lbound);
}

size_t SafeArray::Offset(int32_t index) const {
  const int64_t offset = static_cast<int64_t>(index) - lbound_;
  if (offset < 0 || offset >= static_cast<int64_t>(items_.size())) {
    throw Error::Runtime(err::kSubscriptOutOfRange);
  }
  return static_cast<size_t>(offset);
}

const Variant& SafeArray::operator[](int32_t index) const {
  return items_[Offset(index)];
}

Variant& SafeArray::operator[](int32_t index) { return items_[Offset(index)]; }

SafeArray MakeStringArray(std::initializer_list<const char*> items) {
  SafeArray array;
  for (const char* item : items) array.Append(Variant(item));
  return array;
}

}  // namespace qv
