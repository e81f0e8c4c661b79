// qv::SafeArray is the automation array: one dimension of variants with any
// lower bound. An empty array has the upper bound lower bound - 1. Elements
// are addressed by their index between LBound and UBound; anything outside
// raises 9 "Subscript out of range".
// Threads: a SafeArray is a value: an object is used by one thread at a time;
// different objects may be used on different threads at once.
#ifndef QVGLOBAL_COM_SAFE_ARRAY_H_
#define QVGLOBAL_COM_SAFE_ARRAY_H_

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "com/variant.h"

namespace qv {

class SafeArray {
 public:
  SafeArray() = default;
  explicit SafeArray(std::vector<Variant> items, int32_t lbound = 0)
      : items_(std::move(items)), lbound_(lbound) {}
  SafeArray(std::initializer_list<Variant> items, int32_t lbound = 0)
      : items_(items), lbound_(lbound) {}
  // An array of `count` Empty elements.
  static SafeArray WithSize(size_t count, int32_t lbound = 0);

  int32_t LBound() const { return lbound_; }
  int32_t UBound() const {
    return lbound_ + (static_cast<int32_t>(items_.size()) - 1);
  }
  size_t size() const { return items_.size(); }
  bool empty() const { return items_.empty(); }

  // Element by automation index; raises 9 outside LBound..UBound.
  const Variant& operator[](int32_t index) const;
  Variant& operator[](int32_t index);

  void Append(Variant v) { items_.push_back(std::move(v)); }
  // ReDim Preserve: new upper bound, keeping what fits.
  void Resize(size_t count) { items_.resize(count); }

  const std::vector<Variant>& items() const { return items_; }
  std::vector<Variant>& items() { return items_; }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  bool operator==(const SafeArray&) const = default;

 private:
  size_t Offset(int32_t index) const;

  std::vector<Variant> items_;
  int32_t lbound_ = 0;
};

// A zero-based array of strings, the form the module table uses.
SafeArray MakeStringArray(std::initializer_list<const char*> items);

}  // namespace qv

#endif  // QVGLOBAL_COM_SAFE_ARRAY_H_
