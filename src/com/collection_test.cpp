#include "com/collection.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::RaisesError;

constexpr char kInvalidCall[] = "Invalid procedure call or argument";
constexpr char kOutOfRange[] = "Subscript out of range";
constexpr char kKeyTaken[] =
    "This key is already associated with an element of this collection";

std::vector<Variant> ItemsOf(const Collection& c) {
  std::vector<Variant> items;
  for (int32_t i = 1; i <= c.Count(); ++i) items.push_back(c.Item(i));
  return items;
}

class CollectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    c_.Add("first", "A");
    c_.Add(2);
    c_.Add("third", "\u00c4rger");
  }
  Collection c_;
};

TEST_F(CollectionTest, ItemsByOneBasedPositionOrCaselessKeyKeepTheirType) {
  EXPECT_EQ(c_.Count(), 3);
  EXPECT_EQ(c_.Item(1), Variant("first"));
  EXPECT_EQ(c_.Item(2), Variant(2));
  EXPECT_EQ(c_.Item(int16_t{3}), Variant("third"));
  EXPECT_EQ(c_.Item(2.0), Variant(2));
  EXPECT_EQ(c_.Item("a"), Variant("first"));
  EXPECT_EQ(c_.Item("\u00e4RGER"), Variant("third"));
  // Equality of variants includes the type: an Integer stays an Integer.
  auto inner = std::make_shared<Collection>();
  c_.Add(inner);
  c_.Add(int16_t{5});
  EXPECT_EQ(c_.Item(4).ToObject().get(), inner.get());
  EXPECT_EQ(c_.Item(5), Variant(int16_t{5}));
}

TEST_F(CollectionTest, BadPositionsAndKeysRaiseAndChangeNothing) {
  EXPECT_TRUE(RaisesError([&] { c_.Item(0); }, 9, kOutOfRange));
  EXPECT_TRUE(RaisesError([&] { c_.Item(4); }, 9, kOutOfRange));
  EXPECT_TRUE(RaisesError([&] { c_.Item(-1); }, 9, kOutOfRange));
  EXPECT_TRUE(RaisesError([&] { c_.Remove(4); }, 9, kOutOfRange));
  EXPECT_TRUE(RaisesError([&] { c_.Item("B"); }, 5, kInvalidCall));
  // A string is always a key, even when it looks like a position.
  EXPECT_TRUE(RaisesError([&] { c_.Item("1"); }, 5, kInvalidCall));
  EXPECT_TRUE(RaisesError([&] { c_.Remove("nope"); }, 5, kInvalidCall));
  EXPECT_TRUE(RaisesError([&] { c_.Add("again", "a"); }, 457, kKeyTaken));
  EXPECT_TRUE(
      RaisesError([&] { c_.Add("again", "\u00c4RGER"); }, 457, kKeyTaken));
  EXPECT_EQ(ItemsOf(c_), (std::vector<Variant>{"first", 2, "third"}));
}

TEST_F(CollectionTest, RemoveByPositionOrKeyClosesTheGap) {
  c_.Remove(2);
  EXPECT_EQ(ItemsOf(c_), (std::vector<Variant>{"first", "third"}));
  EXPECT_EQ(c_.Item("\u00c4rger"), Variant("third"));
  c_.Remove("A");
  EXPECT_EQ(ItemsOf(c_), (std::vector<Variant>{"third"}));
  // The key of a removed item can be used again.
  c_.Add("new first", "a");
  EXPECT_EQ(c_.Item(2), Variant("new first"));
  EXPECT_EQ(c_.Item("A"), Variant("new first"));
}

}  // namespace
}  // namespace qv
