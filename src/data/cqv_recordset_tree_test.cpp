#include "data/cqv_recordset_tree.h"

#include <gtest/gtest.h>

#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "data/cqv_rs_with_bookmark.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using testing::RaisesError;

TEST(CQvRecordsetTreeTest, PushPopAndChildrenCountFromZero) {
  auto root = std::make_shared<CQvRecordsetTree>();
  auto rs = std::make_shared<ds::QvRecordset>();
  auto child = root->pushChild(rs);
  EXPECT_EQ(child->recordset(), rs);
  EXPECT_EQ(child->popChild(), root);
  EXPECT_EQ(root->getChildCount(), 1);
  EXPECT_EQ(root->getChild(0), child);
  EXPECT_TRUE(RaisesError([&] { root->getChild(1); }, -2147221504,
                          "CQvRecordsetTree has no child no.: 1",
                          "CQvRecordsetTree.getChild"));
  EXPECT_TRUE(RaisesError([&] { root->popChild(); }, -2147221504,
                          "CQvRecordsetTree has no parent",
                          "CQvRecordsetTree.popChild"));
  root->Free();
}

TEST(CQvRecordsetTreeTest, FreeOnRootLeavesNoNodeAlive) {
  std::vector<std::weak_ptr<CQvRecordsetTree>> nodes;
  std::weak_ptr<ds::QvRecordset> weak_rs;
  {
    auto root = std::make_shared<CQvRecordsetTree>();
    auto rs = std::make_shared<ds::QvRecordset>();
    weak_rs = rs;
    nodes.push_back(root);
    for (int i = 0; i < 3; ++i) {
      auto child = root->pushChild(rs);
      nodes.push_back(child);
      for (int j = 0; j < 2; ++j) nodes.push_back(child->pushChild(rs));
    }
    // Without Free the parent links keep the nodes alive.
    std::weak_ptr<CQvRecordsetTree> weak_root = root;
    root.reset();
    ASSERT_FALSE(weak_root.expired());
    weak_root.lock()->Free();
  }
  for (const auto& node : nodes) EXPECT_TRUE(node.expired());
  EXPECT_TRUE(weak_rs.expired());
}

TEST(CQvRecordsetTreeTest, ReachableByName) {
  auto root = std::make_shared<CQvRecordsetTree>();
  Variant child = root->Call("PUSHCHILD", {Variant(nullptr)});
  EXPECT_EQ(root->Call("getchildcount").ToLong(), 1);
  EXPECT_EQ(root->Call("getChild", {Variant(0)}), child);
  root->Call("free");
  EXPECT_EQ(root->getChildCount(), 0);
}

TEST(CQvRSwithBookMarkTest, FieldsReachableByName) {
  auto entry = std::make_shared<CQvRSwithBookMark>();
  EXPECT_TRUE(entry->Get("m_BookMark").IsEmpty());
  auto rs = std::make_shared<ds::QvRecordset>();
  entry->Set("M_QVRECORDSET", rs);
  EXPECT_EQ(entry->m_QvRecordset, rs);
  entry->Let("m_BookMark", Variant("pos"));
  EXPECT_EQ(entry->m_BookMark, Variant("pos"));
}

}  // namespace
}  // namespace qv
