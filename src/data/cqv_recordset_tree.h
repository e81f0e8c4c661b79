// CQvRecordsetTree is a node of a tree of record sets that a walk from parent
// to child tables builds (the XML export and import use it). Every node holds
// one record set (none for the root), a strong link to its parent and its
// children in order. Parent and child therefore keep each other alive: the
// owner of the root must call Free on it, which releases the whole subtree.
// Threads: a tree is used by one thread at a time, with the connection its
// record sets come from.
#ifndef QVGLOBAL_DATA_CQV_RECORDSET_TREE_H_
#define QVGLOBAL_DATA_CQV_RECORDSET_TREE_H_

#include <memory>

#include "com/collection.h"
#include "com/object.h"

namespace qv::ds {
class QvRecordset;
}

namespace qv {

class CQvRecordsetTree : public Dispatchable<CQvRecordsetTree> {
 public:
  // A new child node holding `rs`, appended to this node's children.
  std::shared_ptr<CQvRecordsetTree> pushChild(
      std::shared_ptr<ds::QvRecordset> rs);
  void setParentNode(std::shared_ptr<CQvRecordsetTree> node);
  // The parent node; raises -2147221504 on the root.
  std::shared_ptr<CQvRecordsetTree> popChild();
  int32_t getChildCount() const;
  // The child at `i`, counted from 0; raises -2147221504 past the last one.
  std::shared_ptr<CQvRecordsetTree> getChild(int32_t i) const;
  // Releases the subtree: children first, then this node's links.
  void Free();

  const std::shared_ptr<ds::QvRecordset>& recordset() const { return rs_; }

  static ClassInfo BuildClassInfo();

 private:
  std::shared_ptr<ds::QvRecordset> rs_;
  std::shared_ptr<CQvRecordsetTree> parent_;
  std::unique_ptr<Collection> children_;  // created on first push
};

}  // namespace qv

#endif  // QVGLOBAL_DATA_CQV_RECORDSET_TREE_H_
