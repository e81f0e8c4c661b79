// qv::Dictionary behaves as the scripting runtime's dictionary: keys are
// variants (numbers stay numbers, so 1 and "1" are different keys), entries
// keep their insertion order, and strings compare binary or, in text mode,
// without regard to letter case. Reading a missing key through Item adds it
// with an Empty item, as the scripting dictionary does.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once. It takes no locks.
#ifndef QVGLOBAL_COM_DICTIONARY_H_
#define QVGLOBAL_COM_DICTIONARY_H_

#include <list>
#include <string>
#include <unordered_map>
#include <utility>

#include "com/object.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "com/variant.h"

namespace qv {

class Dictionary : public Dispatchable<Dictionary> {
 public:
  using Entry = std::pair<Variant, Variant>;  // key, item

  Dictionary() = default;
  explicit Dictionary(text::CompareMode mode) : mode_(mode) {}
  // A copy gets its own index into its own entries.
  Dictionary(const Dictionary& other);
  Dictionary& operator=(const Dictionary& other);
  Dictionary(Dictionary&&) = default;
  Dictionary& operator=(Dictionary&&) = default;

  // Raises 457 when the key exists.
  void Add(const Variant& key, Variant item);
  bool Exists(const Variant& key) const;
  // The item of a key; a missing key is added with Empty first.
  Variant& Item(const Variant& key);
  void SetItem(const Variant& key, Variant item) {
    Item(key) = std::move(item);
  }
  // The item, or nullptr, without adding anything.
  const Variant* Find(const Variant& key) const;
  // Raises 32811 "Element not found" for a missing key.
  void Remove(const Variant& key);
  void RemoveAll();
  int32_t Count() const { return static_cast<int32_t>(entries_.size()); }
  SafeArray Keys() const;
  SafeArray Items() const;

  text::CompareMode CompareMode() const { return mode_; }
  // Only while the dictionary is empty; raises 5 otherwise.
  void SetCompareMode(text::CompareMode mode);

  const std::list<Entry>& entries() const { return entries_; }

  static ClassInfo BuildClassInfo();

 private:
  // A key reduced to what makes two keys equal.
  struct KeyRepr {
    int kind = 0;  // 0 Empty, 1 Null, 2 number, 3 string, 4 object
    double number = 0;
    std::string text;
    const void* object = nullptr;
    bool operator==(const KeyRepr&) const = default;
  };
  struct KeyHash {
    size_t operator()(const KeyRepr& k) const;
  };

  KeyRepr Reduce(const Variant& key) const;
  void Reindex();

  text::CompareMode mode_ = text::CompareMode::kBinary;
  std::list<Entry> entries_;
  std::unordered_map<KeyRepr, std::list<Entry>::iterator, KeyHash> index_;
};

}  // namespace qv

#endif  // QVGLOBAL_COM_DICTIONARY_H_
