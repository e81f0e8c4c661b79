#include "shell/cqv_active_bar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

constexpr int16_t kShift = 1;
constexpr int16_t kCtrl = 2;
constexpr int16_t kAlt = 4;

std::string Decode(int16_t code) {
  return CQVActiveBar().ABKeyCodeToSendKeyStr(code);
}

::testing::AssertionResult RaisesUnknownKeyCode(int16_t code) {
  return testing::RaisesError(
      [code] { Decode(code); }, -2147220504,
      "CQVActiveBar->ABKeyCodeToSendKeyStr: Nicht zuweisbarer KeyCode " +
          std::to_string(code),
      "");
}

TEST(CQVActiveBarTest, DecodesEveryBlockAtItsBoundaries) {
  const std::vector<std::pair<int16_t, std::string>> cases = {
      {0, ""},          {1, "^a"},         {2, "^b"},
      {26, "^z"},       {27, "{F1}"},      {37, "{F11}"},
      {38, "^{F1}"},    {48, "^{F11}"},    {49, "+{F1}"},
      {59, "+{F11}"},   {60, "+^{F1}"},    {65, "+^{F6}"},
      {70, "+^{F11}"},  {71, "^{INSERT}"}, {72, "+{INSERT}"},
      {73, "{DELETE}"}, {74, "+{DELETE}"}, {75, "%{BACKSPACE}"},
  };
  for (const auto& [code, expected] : cases) {
    EXPECT_EQ(Decode(code), expected) << "key code " << code;
  }
}

TEST(CQVActiveBarTest, UnknownKeyCodesRaiseObjectError1000) {
  for (int16_t code : {76, 77, 79, -1, -27, INT16_MAX, INT16_MIN}) {
    EXPECT_TRUE(RaisesUnknownKeyCode(code));
  }
}

// Virtual keys pressed with one shift state and the codes they encode to.
struct EncodeRow {
  int16_t shift;
  std::vector<int16_t> keys;
  std::vector<int16_t> codes;
};

TEST(CQVActiveBarTest, EncodesKeysByTheirShiftState) {
  // Ctrl takes letters ('a' is a virtual key, not a letter), F1-F12 and
  // Insert; Shift takes F1-F12 only; Shift+Ctrl takes any key for a function
  // key; Alt takes Backspace alone.
  const std::vector<EncodeRow> rows = {
      {0, {'A', 112, 123, 111, 124, 45, 8}, {0, 27, 38, 0, 0, 0, 0}},
      {kCtrl,
       {'A', 'Z', '@', '[', 'a', 112, 123, 45, 46, 8},
       {1, 26, 0, 0, 0, 39, 50, 75, 0, 0}},
      {kShift, {112, 123, 124, 45, 46}, {51, 62, 0, 0, 0}},
      {kShift | kCtrl, {112, 123, 'A', 8, INT16_MAX}, {63, 74, 16, -41, 32718}},
      {kAlt, {8, 112}, {79, 0}},
      {kAlt | kCtrl, {8}, {0}},
      {kAlt | kShift, {8}, {0}},
      {kAlt | kShift | kCtrl, {8}, {0}},
  };
  const CQVActiveBar bar;
  for (const EncodeRow& row : rows) {
    ASSERT_EQ(row.keys.size(), row.codes.size());
    for (size_t i = 0; i < row.keys.size(); ++i) {
      EXPECT_EQ(bar.ABKeyCodeFromKey(row.keys[i], row.shift), row.codes[i])
          << "key " << row.keys[i] << " shift " << row.shift;
    }
  }
}

TEST(CQVActiveBarTest, EncoderDisagreesWithTheDecoderAndOverflows) {
  const CQVActiveBar bar;
  EXPECT_EQ(Decode(bar.ABKeyCodeFromKey(112, kCtrl)), "^{F2}");
  EXPECT_EQ(Decode(bar.ABKeyCodeFromKey(45, kCtrl)), "%{BACKSPACE}");
  EXPECT_EQ(Decode(bar.ABKeyCodeFromKey(123, 0)), "^{F1}");
  EXPECT_EQ(Decode(bar.ABKeyCodeFromKey(123, kShift | kCtrl)), "+{DELETE}");
  EXPECT_TRUE(RaisesUnknownKeyCode(bar.ABKeyCodeFromKey(8, kAlt)));
  EXPECT_TRUE(testing::RaisesError(
      [&] { bar.ABKeyCodeFromKey(INT16_MIN, kShift | kCtrl); }, 6, "Overflow"));
}

TEST(CQVActiveBarTest, ArrayToolnamesIsANewZeroBasedArrayOfTwelve) {
  const CQVActiveBar bar;
  Variant first = bar.ARRAY_TOOLNAMES();
  ASSERT_TRUE(first.IsArray());
  const SafeArray& names = first.ToArray();
  EXPECT_EQ(names.LBound(), 0);
  EXPECT_EQ(names,
            MakeStringArray({"tCopy", "tCut", "tDelete", "tPaste", "tRowInsert",
                             "tExitModul", "tSelectionlist",
                             "tSelectionlistSort", "tProjVerw", "tGrpDatKop",
                             "tQvIntelliSense", "tQvABVersion"}));
  first.ToArray()[0] = "changed";
  EXPECT_EQ(bar.ARRAY_TOOLNAMES().ToArray()[0], Variant("tCopy"));
}

TEST(CQVActiveBarTest, MembershipTestsUseTheirOwnCaseRules) {
  // {name, in ARRAY_TOOLNAMES (exact case), a context-menu tool (any case)}
  const std::vector<std::tuple<std::string, bool, bool>> rows = {
      {"tCut", true, true},
      {"tcut", false, true},
      {"TSELECTIONLISTSORT", false, true},
      {"tImport", false, true},
      {"texport", false, true},
      {"tExitModul", true, false},
      {"tQvABVersion", true, false},
      {"bdQVPopup", false, false},
      {"100000", false, false},
      {"", false, false},
      {" tCut", false, false}};
  const CQVActiveBar bar;
  for (const auto& [name, in_array, is_cm] : rows) {
    SCOPED_TRACE(name);
    EXPECT_EQ(bar.IsToolInArrayToolnames(name), in_array);
    EXPECT_EQ(bar.IsCMToolName(name), is_cm);
  }
}

TEST(CQVActiveBarTest, NameConstantsAreDistinctAndKnownToTheToolLists) {
  // Each constant is bound to its own value; every tool name is one the
  // toolbar lists know, so a name bound to the wrong constant or misspelt
  // shows here.
  ObjectPtr bar = CreateObject("QVGLOBAL10.cqvactivebar");
  const CQVActiveBar direct;
  std::set<std::string> values;
  size_t constants = 0;
  for (const MemberInfo& member : bar->GetClassInfo().members()) {
    if (!member.name.starts_with("MNU_")) continue;
    ++constants;
    const std::string value = bar->Get(member.name).ToString();
    values.insert(value);
    if (member.name.ends_with("_TOOLNAME")) {
      EXPECT_TRUE(direct.IsCMToolName(value) ||
                  direct.IsToolInArrayToolnames(value))
          << member.name << " = " << value;
    }
  }
  EXPECT_EQ(constants, 17u);
  EXPECT_EQ(values.size(), constants);
  EXPECT_EQ(bar->Get("MNU_STARTWINDOWS_TOOLID"), Variant("100000"));
  EXPECT_EQ(bar->Get("MNU_ENDWINDOWS_TOOLID"), Variant("100010"));
  EXPECT_EQ(bar->Get("MNU_QVPOPUP_BANDNAME"), Variant("bdQVPopup"));
}

}  // namespace
}  // namespace qv
