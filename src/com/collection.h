// qv::Collection is the automation collection: a 1-based list of variants,
// each optionally under a unique string key that compares without regard to
// letter case. Errors are those a scripting host raises: 5 for an unknown
// key, 9 for a position out of range, 457 for a key given twice.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once. It takes no locks.
#ifndef QVGLOBAL_COM_COLLECTION_H_
#define QVGLOBAL_COM_COLLECTION_H_

#include <optional>
#include <string>
#include <vector>

#include "com/object.h"
#include "com/variant.h"

namespace qv {

class Collection : public Dispatchable<Collection> {
 public:
  void Add(Variant item, std::optional<std::string> key = std::nullopt);
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  // By 1-based position (a number) or by key (a string).
  const Variant& Item(const Variant& index) const;
  void Remove(const Variant& index);

  static ClassInfo BuildClassInfo();

 private:
  struct Entry {
    Variant item;
    std::optional<std::string> key;  // folded for comparison
  };
  size_t Locate(const Variant& index) const;

  std::vector<Entry> items_;
};

}  // namespace qv

#endif  // QVGLOBAL_COM_COLLECTION_H_
