#include "data/table_name.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/table_name_index.h"

namespace qv {
namespace {

// The lookup key must agree with the general form for every kind of name,
// including those that leave the fast path.
TEST(TableNameTest, LookupKeyAgreesWithGeneralForm) {
  const std::string long_name = " " + std::string(70, 'R') + "aum ";
  for (const std::string& name : std::vector<std::string>{
           "  Raum ", "raum", "RAUM_T", "   ", "", "\tRaum\t", " Gebäude ",
           "ÄUSSERE WAND", long_name, std::string(64, 'X'), " O'Brien ",
           "Raumbuch", " Raumbuch_Position ", "Straße", "  Zeile ÄÖÜ 16 Z"}) {
    SCOPED_TRACE(name);
    TableNameKey key(name);
    EXPECT_EQ(key.view(), NormalizeTableName(name));
    EXPECT_EQ(key.hash(), TableNameKey::Hash(NormalizeTableName(name)));
  }
}

TEST(TableNameTest, TrimsBlanksOnlyAndFoldsAccentedLetters) {
  EXPECT_EQ(NormalizeTableName("  Raum "), "raum");
  EXPECT_EQ(NormalizeTableName("\tRaum "), "\traum");
  EXPECT_EQ(NormalizeTableName(" GEBÄUDE"), "gebäude");
  EXPECT_EQ(NormalizeTableName("   "), "");
  EXPECT_EQ(TableNameKey(std::string(70, 'A')).view(), std::string(70, 'a'));
}

TEST(TableNameIndexTest, FindsEveryNameByAnyWritingOfIt) {
  TableNameIndex<int> index;
  EXPECT_EQ(index.Find(TableNameKey("raum")), nullptr);
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(index.Insert(fmt::format("tabelle{}", i), i));
  }
  EXPECT_FALSE(index.Insert("tabelle7", -1));
  ASSERT_TRUE(index.Insert("gebäude", 1000));
  EXPECT_EQ(index.size(), 1001u);
  for (int i = 0; i < 1000; ++i) {
    const int* found = index.Find(TableNameKey(fmt::format("  TABELLE{} ", i)));
    ASSERT_NE(found, nullptr) << i;
    EXPECT_EQ(*found, i);
  }
  ASSERT_NE(index.Find(TableNameKey(" GEBÄUDE")), nullptr);
  EXPECT_EQ(*index.Find("gebäude"), 1000);
  EXPECT_EQ(index.Find(TableNameKey("tabelle1000")), nullptr);
  EXPECT_EQ(index.Find(TableNameKey("tabelle")), nullptr);
  index.Clear();
  EXPECT_EQ(index.Find(TableNameKey("tabelle7")), nullptr);
  EXPECT_TRUE(index.Insert("tabelle7", 7));
}

// The remembered last name must never hand out a value from before a change
// of the slots: growing moves them, clearing empties them.
TEST(TableNameIndexTest, TheLastNameAskedForIsForgottenWhenTheSlotsChange) {
  TableNameIndex<int> index;
  ASSERT_TRUE(index.Insert("raum", 1));
  ASSERT_NE(index.FindAsWritten(" Raum"), nullptr);
  EXPECT_EQ(*index.FindAsWritten(" Raum"), 1);
  for (int i = 0; i < 40; ++i) index.Insert(fmt::format("t{}", i), i);
  ASSERT_NE(index.FindAsWritten(" Raum"), nullptr);
  EXPECT_EQ(*index.FindAsWritten(" Raum"), 1);
  EXPECT_EQ(*index.FindAsWritten("T39"), 39);
  EXPECT_EQ(index.FindAsWritten("stock"), nullptr);
  EXPECT_EQ(*index.FindAsWritten("T39"), 39);
  index.Clear();
  EXPECT_EQ(index.FindAsWritten("T39"), nullptr);
  ASSERT_TRUE(index.Insert("t39", 2));
  EXPECT_EQ(*index.FindAsWritten("T39"), 2);
  const std::string long_name(70, 'X');
  ASSERT_TRUE(index.Insert(std::string(70, 'x'), 3));
  EXPECT_EQ(*index.FindAsWritten(long_name), 3);
  EXPECT_EQ(*index.FindAsWritten("T39"), 2);
}

}  // namespace
}  // namespace qv
