#include "data/cqv_recordset_tree.h"

#include "com/dispatch.h"
#include "com/error.h"
#include "datasource/qv_recordset.h"

namespace qv {

std::shared_ptr<CQvRecordsetTree> CQvRecordsetTree::pushChild(
    std::shared_ptr<ds::QvRecordset> rs) {
  auto node = std::make_shared<CQvRecordsetTree>();
  node->setParentNode(
      std::static_pointer_cast<CQvRecordsetTree>(shared_from_this()));
  node->rs_ = std::move(rs);
  if (!children_) children_ = std::make_unique<Collection>();
  children_->Add(Variant(node));
  return node;
}

void CQvRecordsetTree::setParentNode(std::shared_ptr<CQvRecordsetTree> node) {
  parent_ = std::move(node);
}

std::shared_ptr<CQvRecordsetTree> CQvRecordsetTree::popChild() {
  if (!parent_) {
    throw Error(err::kObjectBase, "CQvRecordsetTree.popChild",
                "CQvRecordsetTree has no parent");
  }
  return parent_;
}

int32_t CQvRecordsetTree::getChildCount() const {
  return children_ ? children_->Count() : 0;
}

std::shared_ptr<CQvRecordsetTree> CQvRecordsetTree::getChild(int32_t i) const {
  if (getChildCount() <= i) {
    throw Error(err::kObjectBase, "CQvRecordsetTree.getChild",
                "CQvRecordsetTree has no child no.: " + std::to_string(i));
  }
  // A negative index is not checked here: the collection refuses it.
  if (!children_) throw Error::Runtime(err::kSubscriptOutOfRange);
  return children_->Item(Variant(i + 1)).ToObjectAs<CQvRecordsetTree>();
}

void CQvRecordsetTree::Free() {
  // Dropping the links may release the last other owner of this node.
  const std::shared_ptr<Object> self = weak_from_this().lock();
  if (children_) {
    for (int32_t i = 1; i <= children_->Count(); ++i) {
      children_->Item(Variant(i)).ToObject()->Call("Free");
    }
  }
  children_.reset();
  rs_.reset();
  parent_.reset();
}

ClassInfo CQvRecordsetTree::BuildClassInfo() {
  using T = CQvRecordsetTree;
  return ClassBuilder<T>("CQvRecordsetTree")
      .Method("pushChild", &T::pushChild)
      .Method("setParentNode", &T::setParentNode)
      .Method("popChild", &T::popChild)
      .Method("getChildCount", &T::getChildCount)
      .Method("getChild", &T::getChild)
      .Method("Free", &T::Free)
      .Build();
}

}  // namespace qv
