// TableNameIndex keeps values under normalised table names and finds them by
// a TableNameKey without building a string: the key's hash was computed
// while the name was folded, and the table is open-addressed over a power of
// two, so a lookup is one mask and, nearly always, one compare. Values are
// only ever added or all cleared, as the table cache of a connection never
// forgets a single table. FindAsWritten also remembers the last name it was
// asked for, as the caller wrote it, so that asking for the same table again
// (a module's loop calling getTable("Raum")) is one compare of the bytes.
// The index owns its values.
// Threads: an index is used by one thread at a time; concurrent Find calls
// without an add are safe, as they only read; FindAsWritten writes its memo.
#ifndef QVGLOBAL_DATA_TABLE_NAME_INDEX_H_
#define QVGLOBAL_DATA_TABLE_NAME_INDEX_H_

#include <array>
#include <cstddef>
#include <cstring>
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

  // The value under the name that `as_written` normalises to, or nullptr.
  const T* FindAsWritten(std::string_view as_written) const {
    const size_t size = as_written.size();
    if (last_found_ && size == last_size_ &&
        std::memcmp(as_written.data(), last_written_.data(), size) == 0) {
      return last_found_;
    }
    const T* found = Find(TableNameKey(as_written));
    if (found && size <= last_written_.size()) {
      std::memcpy(last_written_.data(), as_written.data(), size);
      last_size_ = size;
      last_found_ = found;
    }
    return found;
  }

  // Adds `value` under `normalized`; false, changing nothing, when the name
  // is there already.
  bool Insert(std::string normalized, T value) {
    const size_t hash = TableNameKey::Hash(normalized);
    if (Find(normalized, hash)) return false;
    last_found_ = nullptr;  // growing moves the slots
    if (2 * (size_ + 1) > slots_.size()) Grow();
    Slot& slot = slots_[FreeSlot(hash)];
    slot = {hash, std::move(normalized), std::move(value), true};
    ++size_;
    return true;
  }

  void Clear() {
    slots_.clear();
    size_ = 0;
    last_found_ = nullptr;
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
  // The last FindAsWritten that found a value: the name as written, and the
  // value in its slot (null after any change of the slots).
  mutable std::array<char, 64> last_written_;
  mutable size_t last_size_ = 0;
  mutable const T* last_found_ = nullptr;
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_TABLE_NAME_INDEX_H_
