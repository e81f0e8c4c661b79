// TableNameIndex keeps values under normalised table names and finds them by
// a TableNameKey without building a string: the key's hash was computed
// while the name was folded, and the table is open-addressed over a power of
// two, so a lookup is one mask and, nearly always, one compare. Values are
// only ever added or all cleared, as the table cache of a connection never
// forgets a single table. The index owns its values.
// Threads: an index is used by one thread at a time; concurrent lookups without
// an add are safe, as they only read.
#ifndef QVGLOBAL_DATA_TABLE_NAME_INDEX_H_
#define QVGLOBAL_DATA_TABLE_NAME_INDEX_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/table_name.h"

namespace qv {

template <class T>
class TableNameIndex {
 public:
  // The value under the key's name, or nullptr.
  const T* Find(const TableNameKey& key) const {
    return Find(key.view(), key.hash());
  }
  // The value under an already normalised name, or nullptr.
  const T* Find(std::string_view normalized) const {
    return Find(normalized, TableNameKey::Hash(normalized));
  }

  // Adds `value` under `normalized`; false, changing nothing, when the name
  // is there already.
  bool Insert(std::string normalized, T value) {
    const size_t hash = TableNameKey::Hash(normalized);
    if (Find(normalized, hash)) return false;
    if (2 * (size_ + 1) > slots_.size()) Grow();
    Slot& slot = slots_[FreeSlot(hash)];
    slot = {hash, std::move(normalized), std::move(value), true};
    ++size_;
    return true;
  }

  void Clear() {
    slots_.clear();
    size_ = 0;
  }
  size_t size() const { return size_; }

 private:
  struct Slot {
    size_t hash = 0;
    std::string name;
    T value{};
    bool used = false;
  };

  static bool SameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
      if (a[i] != b[i]) return false;
    }
    return true;
  }

  const T* Find(std::string_view name, size_t hash) const {
    if (slots_.empty()) return nullptr;
    const size_t mask = slots_.size() - 1;
    // At most half the slots are used, so the probe ends at a free one.
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
      const Slot& slot = slots_[i];
      if (!slot.used) return nullptr;
      if (slot.hash == hash && SameName(slot.name, name)) return &slot.value;
    }
  }

  size_t FreeSlot(size_t hash) const {
    const size_t mask = slots_.size() - 1;
    size_t i = hash & mask;
    while (slots_[i].used) i = (i + 1) & mask;
    return i;
  }

  void Grow() {
    std::vector<Slot> old = std::move(slots_);
    slots_ = std::vector<Slot>(old.empty() ? 16 : 2 * old.size());
    for (Slot& slot : old) {
      if (slot.used) slots_[FreeSlot(slot.hash)] = std::move(slot);
    }
  }

  std::vector<Slot> slots_;  // empty or a power of two
  size_t size_ = 0;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_TABLE_NAME_INDEX_H_
