#include "com/dictionary.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include "com/class_factory.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::RaisesError;

constexpr char kKeyTaken[] =
    "This key is already associated with an element of this collection";

TEST(DictionaryTest, KeepsInsertionOrderThroughRemoveAndReAdd) {
  Dictionary d;
  d.Add("b", 1);
  d.Add("a", 2);
  d.Add("c", 3);
  d.Remove("b");
  d.Add("b", 4);
  EXPECT_EQ(d.Keys(), SafeArray({"a", "c", "b"}));
  EXPECT_EQ(d.Items(), SafeArray({2, 3, 4}));
  EXPECT_EQ(d.Keys().LBound(), 0);
  EXPECT_EQ(d.Count(), 3);
}

TEST(DictionaryTest, NumbersStayNumbers) {
  Dictionary d;
  d.Add(1, "number");
  d.Add("1", "string");
  EXPECT_EQ(d.Count(), 2);
  EXPECT_EQ(d.Item(1), Variant("number"));
  EXPECT_EQ(d.Item("1"), Variant("string"));
  // The same value in another numeric type is the same key.
  EXPECT_EQ(d.Item(int16_t{1}), Variant("number"));
  EXPECT_EQ(d.Item(1.0), Variant("number"));
  EXPECT_TRUE(RaisesError([&] { d.Add(int16_t{1}, "again"); }, 457, kKeyTaken));
  // Keys come back with the type they were added with.
  EXPECT_EQ(d.Keys()[0].type(), VarType::kLong);
  EXPECT_EQ(d.Keys()[1].type(), VarType::kString);
  EXPECT_FALSE(d.Exists(2));
  EXPECT_FALSE(d.Exists("1.0"));
}

TEST(DictionaryTest, BinaryModeDistinguishesCaseTextModeDoesNotSetWhileEmpty) {
  Dictionary binary;
  binary.Add("Key", 1);
  binary.Add("KEY", 2);
  EXPECT_FALSE(binary.Exists("key"));
  EXPECT_EQ(binary.Count(), 2);

  Dictionary text(text::CompareMode::kText);
  text.Add("Stra\u00dfe \u00c4", 1);
  EXPECT_TRUE(text.Exists("STRA\u00dfE \u00e4"));
  EXPECT_TRUE(
      RaisesError([&] { text.Add("stra\u00dfe \u00e4", 2); }, 457, kKeyTaken));
  text.SetItem("STRA\u00dfE \u00c4", 3);
  EXPECT_EQ(text.Count(), 1);
  EXPECT_EQ(text.Items()[0], Variant(3));
  // The key keeps the spelling it was first added with.
  EXPECT_EQ(text.Keys()[0], Variant("Stra\u00dfe \u00c4"));
  // The mode changes only while the dictionary is empty.
  Dictionary d;
  d.SetCompareMode(text::CompareMode::kText);
  d.Add("A", 1);
  EXPECT_TRUE(d.Exists("a"));
  EXPECT_TRUE(RaisesError([&] { d.SetCompareMode(text::CompareMode::kBinary); },
                          5, "Invalid procedure call or argument"));
  EXPECT_EQ(d.CompareMode(), text::CompareMode::kText);
}

TEST(DictionaryTest, ItemOfAMissingKeyAddsEmptySetItemReplacesInPlace) {
  Dictionary d;
  EXPECT_TRUE(d.Item("ghost").IsEmpty());
  EXPECT_TRUE(d.Exists("ghost"));
  EXPECT_EQ(d.Count(), 1);
  EXPECT_EQ(d.Find("other"), nullptr);  // Find adds nothing
  EXPECT_EQ(d.Count(), 1);
  d.Add("x", 1);
  d.Add("y", 2);
  d.SetItem("x", "one");
  d.SetItem("z", 3);
  EXPECT_EQ(d.Keys(), SafeArray({"ghost", "x", "y", "z"}));
  EXPECT_EQ(d.Items(), SafeArray({Variant(), "one", 2, 3}));
}

TEST(DictionaryTest, RemoveOfAMissingKeyRaises32811) {
  Dictionary d;
  d.Add("a", 1);
  EXPECT_TRUE(RaisesError([&] { d.Remove("b"); }, 32811, "Element not found"));
  EXPECT_TRUE(RaisesError([&] { d.Remove("A"); }, 32811, "Element not found"));
  d.RemoveAll();
  EXPECT_EQ(d.Count(), 0);
  EXPECT_EQ(d.Keys(), SafeArray());
  EXPECT_TRUE(RaisesError([&] { d.Remove("a"); }, 32811, "Element not found"));
  d.Add("a", 2);  // the index was cleared as well
  EXPECT_EQ(d.Item("a"), Variant(2));
}

TEST(DictionaryTest, ObjectKeysCompareByIdentity) {
  Dictionary d;
  auto first = std::make_shared<qv::testing::CallbackObject>();
  auto second = std::make_shared<qv::testing::CallbackObject>();
  d.Add(first, 1);
  d.Add(second, 2);
  EXPECT_EQ(d.Item(first), Variant(1));
  EXPECT_TRUE(
      RaisesError([&] { d.Add(SafeArray({1}), 3); }, 13, "Type mismatch"));
}

TEST(DictionaryTest, CopiesAreIndependent) {
  Dictionary original(text::CompareMode::kText);
  original.Add("a", 1);
  original.Add("b", 2);
  Dictionary copy = original;
  copy.Remove("A");
  copy.SetItem("b", 20);
  copy.Add("c", 3);
  EXPECT_EQ(original.Keys(), SafeArray({"a", "b"}));
  EXPECT_EQ(original.Items(), SafeArray({1, 2}));
  EXPECT_EQ(copy.Keys(), SafeArray({"b", "c"}));
  EXPECT_EQ(copy.Items(), SafeArray({20, 3}));

  Dictionary assigned;
  assigned.Add("old", 0);
  assigned = original;
  original.RemoveAll();
  EXPECT_TRUE(assigned.Exists("B"));
  EXPECT_FALSE(assigned.Exists("old"));
  EXPECT_EQ(assigned.Item("b"), Variant(2));

  Dictionary moved = std::move(assigned);
  EXPECT_EQ(moved.Item("a"), Variant(1));
  moved.Remove("a");
  EXPECT_EQ(moved.Keys(), SafeArray({"b"}));
}

TEST(DictionaryDispatchTest, ReachableByNameIncludingItemLetAndGet) {
  ObjectPtr d = CreateObject("Scripting.Dictionary");
  d->Let("CompareMode", 1);
  d->Call("Add", {"Key", 1});
  Variant let_args[] = {"KEY", "changed"};
  d->Invoke("Item", InvokeKind::kLet, let_args);
  EXPECT_EQ(d->Get("Item", {"key"}), Variant("changed"));
  EXPECT_EQ(d->Call("Exists", {"kEy"}), Variant(true));
  EXPECT_EQ(d->Get("Count"), Variant(1));
  EXPECT_EQ(d->Call("Keys"), Variant(SafeArray({"Key"})));
  EXPECT_EQ(d->Call("Items"), Variant(SafeArray({"changed"})));
  EXPECT_TRUE(RaisesError([&] { d->Call("Add", {"key", 2}); }, 457, kKeyTaken));
  d->Call("RemoveAll");
  EXPECT_EQ(d->Get("Count"), Variant(0));
}

}  // namespace
}  // namespace qv
