#include "data/cqv_recordset_tree.h"

#include <gtest/gtest.h>

#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "data/cqv_rs_with_bookmark.h"
#include "datasource/qv_recordset.h"

namespace qv {
namespace {

void ExpectTreeError(const std::function<void()>& f, const std::string& source,
                     const std::string& text) {
  try {
    f();
    FAIL() << "no error raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), -2147221504);
    EXPECT_EQ(e.source(), source);
    EXPECT_EQ(e.description(), text);
  }
}

TEST(CQvRecordsetTreeTest, PushPopAndChildrenCountFromZero) {
  auto root = std::make_shared<CQvRecordsetTree>();
  auto rs = std::make_shared<ds::QvRecordset>();
  auto child = root->pushChild(rs);
  EXPECT_EQ(child->recordset(), rs);
  EXPECT_EQ(child->popChild(), root);
  EXPECT_EQ(root->getChildCount(), 1);
  EXPECT_EQ(root->getChild(0), child);
  ExpectTreeError([&] { root->getChild(1); }, "CQvRecordsetTree.getChild",
                  "CQvRecordsetTree has no child no.: 1");
  ExpectTreeError([&] { root->popChild(); }, "CQvRecordsetTree.popChild",
                  "CQvRecordsetTree has no parent");
  root->Free();
}

TEST(CQvRecordsetTreeTest, NegativeIndexFailsInTheCollection) {
  auto root = std::make_shared<CQvRecordsetTree>();
  root->pushChild(nullptr);
  try {
    root->getChild(-1);
    FAIL();
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), 9);
    EXPECT_EQ(e.description(), "Subscript out of range");
  }
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
    root->Free();
  }
  for (const auto& node : nodes) EXPECT_TRUE(node.expired());
  EXPECT_TRUE(weak_rs.expired());
}

TEST(CQvRecordsetTreeTest, WithoutFreeTheCycleKeepsNodesAlive) {
  std::weak_ptr<CQvRecordsetTree> weak_child;
  auto root = std::make_shared<CQvRecordsetTree>();
  weak_child = root->pushChild(nullptr);
  std::weak_ptr<CQvRecordsetTree> weak_root = root;
  root.reset();
  EXPECT_FALSE(weak_root.expired());  // held by its child's parent link
  weak_root.lock()->Free();
  EXPECT_TRUE(weak_root.expired());
  EXPECT_TRUE(weak_child.expired());
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
  try {
    entry->Set("m_QvRecordset", std::make_shared<CQvRSwithBookMark>());
    FAIL();
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), 13);
  }
}

}  // namespace
}  // namespace qv
