// CQvErrTree is the duplicate filter of the error list: it remembers the
// messages offered to it and tells whether one is new. A message is
// identified by its module, its number and its field values in order; kind
// and text play no part. Field values are the same when they are of the
// same sort and equal: numbers of any type by value (1 and 1.0 are one
// value), text by its exact characters, objects by identity, Empty and Null
// each only with themselves. The messages are kept in an ordered set, so
// each offer costs a logarithmic search.
// Threads: used by its owning list only.
#ifndef QVGLOBAL_MESSAGES_INTERNAL_CQV_ERR_TREE_H_
#define QVGLOBAL_MESSAGES_INTERNAL_CQV_ERR_TREE_H_

#include <compare>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "messages/cqv_err_msg.h"

namespace qv::internal {

class CQvErrTree {
 public:
  // Records `msg`; false when an identical message was recorded before.
  bool Insert(CQvErrMsg& msg);
  void Clear() { seen_.clear(); }
  size_t size() const { return seen_.size(); }

 private:
  struct FieldKey {
    int sort = 0;  // Empty, Null, number, text, object, other
    double number = 0;
    std::string text;
    const void* object = nullptr;
    auto operator<=>(const FieldKey&) const = default;
  };
  struct MessageKey {
    int32_t modul = 0;
    int32_t num = 0;
    std::vector<FieldKey> fields;
    auto operator<=>(const MessageKey&) const = default;
  };
  static FieldKey KeyOf(const Variant& v);

  std::set<MessageKey> seen_;
};

}  // namespace qv::internal

#endif  // QVGLOBAL_MESSAGES_INTERNAL_CQV_ERR_TREE_H_
