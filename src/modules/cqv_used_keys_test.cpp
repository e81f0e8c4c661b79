#include "modules/cqv_used_keys.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

// One set of added triples (some twice, in other letter case) and the
// lookups that must and must not find them.
TEST(CQvUsedKeysTest, FindsExactlyTheAddedTriples) {
  CQvUsedKeys_t_ keys;
  const struct {
    int32_t modul;
    const char* key;
    const char* value;
  } kAdded[] = {{4, "Raum", "R1"},
                {4, "Raum", "R2"},
                {4, "Stock", "S1"},
                {7, "Raum", "R3"},
                {-1, "Raum", "R4"},
                {2, "Key", "Data"},
                {2, "KEY", "data"},
                {1, "", ""},
                {1, "Gr\u00d6\u00dfe", "\u00c4rger"}};
  for (const auto& a : kAdded)
    EXPECT_NO_THROW(keys.add(a.modul, a.key, a.value));
  const struct {
    int32_t modul;
    const char* key;
    const char* value;
    bool found;
  } kLookups[] = {
      {4, "RAUM", "r1", true},
      {4, "raum", "R2", true},
      {4, "Stock", "S1", true},
      {7, "Raum", "R3", true},
      {-1, "raum", "r4", true},
      {2, "key", "DATA", true},
      {1, "", "", true},
      {1, "gr\u00f6\u00dfe", "\u00e4RGER", true},
      {5, "raum", "r1", false},
      {4, "Stock", "R1", false},
      {4, "Raum", "R3", false},
      {7, "Raum", "R1", false},
      {4, "Raum ", "R1", false},
      {2, "key", "data2", false},
      {1, "", " ", false},
      {1, "x", "", false},
      {1, "GROESSE", "\u00e4rger", false},
  };
  for (const auto& l : kLookups) {
    EXPECT_EQ(keys.isIn(l.modul, l.key, l.value), l.found)
        << l.modul << " '" << l.key << "' '" << l.value << "'";
  }
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

}  // namespace
}  // namespace qv
