#include "modules/cqv_used_keys.h"

#include <gtest/gtest.h>

#include "com/class_factory.h"
#include "com/variant.h"

namespace qv {
namespace {

TEST(CQvUsedKeysTest, FindsATripleWithoutRegardToLetterCase) {
  CQvUsedKeys_t_ keys;
  keys.add(4, "Raum", "R1");
  EXPECT_TRUE(keys.isIn(4, "RAUM", "r1"));
  EXPECT_TRUE(keys.isIn(4, "raum", "R1"));
  EXPECT_FALSE(keys.isIn(5, "raum", "r1"));
  EXPECT_FALSE(keys.isIn(4, "Stock", "r1"));
  EXPECT_FALSE(keys.isIn(4, "Raum", "R2"));
  EXPECT_FALSE(keys.isIn(4, "Raum ", "R1"));  // no trimming
}

TEST(CQvUsedKeysTest, FoldsAccentedLetters) {
  CQvUsedKeys_t_ keys;
  keys.add(1, "Gr\u00d6\u00dfe", "\u00c4rger");
  EXPECT_TRUE(keys.isIn(1, "gr\u00f6\u00dfe", "\u00e4RGER"));
  EXPECT_FALSE(keys.isIn(1, "GROESSE", "\u00e4rger"));
}

TEST(CQvUsedKeysTest, KeepsModulesKeysAndValuesApart) {
  CQvUsedKeys_t_ keys;
  keys.add(4, "Raum", "R1");
  keys.add(4, "Raum", "R2");
  keys.add(4, "Stock", "S1");
  keys.add(7, "Raum", "R3");
  keys.add(-1, "Raum", "R4");
  EXPECT_TRUE(keys.isIn(4, "Raum", "R1"));
  EXPECT_TRUE(keys.isIn(4, "Raum", "R2"));
  EXPECT_TRUE(keys.isIn(4, "Stock", "S1"));
  EXPECT_FALSE(keys.isIn(4, "Stock", "R1"));
  EXPECT_FALSE(keys.isIn(4, "Raum", "R3"));
  EXPECT_TRUE(keys.isIn(7, "Raum", "R3"));
  EXPECT_FALSE(keys.isIn(7, "Raum", "R1"));
  EXPECT_TRUE(keys.isIn(-1, "raum", "r4"));
}

TEST(CQvUsedKeysTest, AddingATripleAgainChangesNothing) {
  CQvUsedKeys_t_ keys;
  keys.add(2, "Key", "Data");
  EXPECT_NO_THROW(keys.add(2, "KEY", "data"));
  EXPECT_NO_THROW(keys.add(2, "key", "DATA"));
  EXPECT_TRUE(keys.isIn(2, "key", "data"));
  EXPECT_FALSE(keys.isIn(2, "key", "data2"));
}

TEST(CQvUsedKeysTest, EmptyStringsAreOrdinaryKeys) {
  CQvUsedKeys_t_ keys;
  keys.add(1, "", "");
  EXPECT_TRUE(keys.isIn(1, "", ""));
  EXPECT_FALSE(keys.isIn(1, "", " "));
  EXPECT_FALSE(keys.isIn(1, "x", ""));
}

TEST(CQvUsedKeysTest, LookupsAddNothing) {
  CQvUsedKeys_t_ keys;
  EXPECT_FALSE(keys.isIn(3, "Raum", "R1"));
  keys.add(3, "Stock", "S1");
  EXPECT_FALSE(keys.isIn(3, "Raum", "R1"));
  EXPECT_FALSE(keys.isIn(3, "Stock", "S2"));
  keys.add(3, "Raum", "R1");
  keys.add(3, "Stock", "S2");
  EXPECT_TRUE(keys.isIn(3, "Raum", "R1"));
  EXPECT_TRUE(keys.isIn(3, "Stock", "S2"));
}

TEST(CQvUsedKeysTest, DispatchByName) {
  ObjectPtr keys = CreateObject("qvglobal10.CQvUsedKeys_t_");
  keys->Call("ADD", {int16_t{4}, "Raum", "R1"});
  EXPECT_EQ(keys->Call("isin", {int32_t{4}, "RAUM", "r1"}), Variant(true));
  EXPECT_EQ(keys->Call("IsIn", {"4", "raum", "r1"}), Variant(true));
  EXPECT_EQ(keys->Call("isIn", {int32_t{5}, "raum", "r1"}), Variant(false));
  const auto& members = keys->GetClassInfo().members();
  ASSERT_EQ(members.size(), 2u);
  EXPECT_EQ(members[0].name, "add");
  EXPECT_EQ(members[1].name, "isIn");
}

}  // namespace
}  // namespace qv
