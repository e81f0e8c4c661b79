#include "shell/cqv_active_bar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
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

TEST(CQVActiveBarTest, EncodesPlainAndCtrlKeys) {
  const CQVActiveBar bar;
  EXPECT_EQ(bar.ABKeyCodeFromKey('A', kCtrl), 1);
  EXPECT_EQ(bar.ABKeyCodeFromKey('Z', kCtrl), 26);
  EXPECT_EQ(bar.ABKeyCodeFromKey('@', kCtrl), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey('[', kCtrl), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey('a', kCtrl),
            0);  // a virtual key, not a letter
  EXPECT_EQ(bar.ABKeyCodeFromKey('A', 0), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(112, 0), 27);  // F1
  EXPECT_EQ(bar.ABKeyCodeFromKey(123, 0), 38);  // F12
  EXPECT_EQ(bar.ABKeyCodeFromKey(111, 0), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(124, 0), 0);  // F13
  EXPECT_EQ(bar.ABKeyCodeFromKey(112, kCtrl), 39);
  EXPECT_EQ(bar.ABKeyCodeFromKey(123, kCtrl), 50);
  EXPECT_EQ(bar.ABKeyCodeFromKey(45, kCtrl), 75);  // Insert
  EXPECT_EQ(bar.ABKeyCodeFromKey(45, 0), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(46, kCtrl), 0);  // Delete
}

TEST(CQVActiveBarTest, EncodesShiftedKeys) {
  const CQVActiveBar bar;
  EXPECT_EQ(bar.ABKeyCodeFromKey(112, kShift), 51);
  EXPECT_EQ(bar.ABKeyCodeFromKey(123, kShift), 62);
  EXPECT_EQ(bar.ABKeyCodeFromKey(124, kShift), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(45, kShift), 0);  // Shift+Insert
  EXPECT_EQ(bar.ABKeyCodeFromKey(46, kShift), 0);  // Shift+Delete
  // Shift+Ctrl takes any key for a function key.
  EXPECT_EQ(bar.ABKeyCodeFromKey(112, kShift | kCtrl), 63);
  EXPECT_EQ(bar.ABKeyCodeFromKey(123, kShift | kCtrl), 74);
  EXPECT_EQ(bar.ABKeyCodeFromKey('A', kShift | kCtrl), 16);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kShift | kCtrl), -41);
  EXPECT_EQ(bar.ABKeyCodeFromKey(INT16_MAX, kShift | kCtrl), 32718);
}

TEST(CQVActiveBarTest, EncodesOnlyAltBackspaceWithAlt) {
  const CQVActiveBar bar;
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kAlt), 79);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kAlt | kCtrl), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kAlt | kShift), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kAlt | kShift | kCtrl), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(112, kAlt), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, 0), 0);
  EXPECT_EQ(bar.ABKeyCodeFromKey(8, kCtrl), 0);
}

TEST(CQVActiveBarTest, EncoderAndDecoderDisagreeAsTheToolbarsExpect) {
  const CQVActiveBar bar;
  int16_t ctrl_f1 = bar.ABKeyCodeFromKey(112, kCtrl);
  EXPECT_EQ(bar.ABKeyCodeToSendKeyStr(ctrl_f1), "^{F2}");
  int16_t ctrl_insert = bar.ABKeyCodeFromKey(45, kCtrl);
  EXPECT_EQ(bar.ABKeyCodeToSendKeyStr(ctrl_insert), "%{BACKSPACE}");
  int16_t f12 = bar.ABKeyCodeFromKey(123, 0);
  EXPECT_EQ(bar.ABKeyCodeToSendKeyStr(f12), "^{F1}");
  int16_t shift_ctrl_f12 = bar.ABKeyCodeFromKey(123, kShift | kCtrl);
  EXPECT_EQ(bar.ABKeyCodeToSendKeyStr(shift_ctrl_f12), "+{DELETE}");
  EXPECT_TRUE(RaisesUnknownKeyCode(bar.ABKeyCodeFromKey(8, kAlt)));
}

TEST(CQVActiveBarTest, EncoderOverflowRaisesTheOverflowError) {
  EXPECT_TRUE(testing::RaisesError(
      [] { CQVActiveBar().ABKeyCodeFromKey(INT16_MIN, kShift | kCtrl); }, 6,
      "Overflow"));
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
  const CQVActiveBar bar;
  EXPECT_TRUE(bar.IsToolInArrayToolnames("tCut"));
  EXPECT_FALSE(bar.IsToolInArrayToolnames("tcut"));
  EXPECT_TRUE(bar.IsCMToolName("tcut"));
  EXPECT_TRUE(bar.IsCMToolName("TSELECTIONLISTSORT"));
  EXPECT_FALSE(bar.IsToolInArrayToolnames("tImport"));
  EXPECT_TRUE(bar.IsCMToolName("tImport"));
  EXPECT_TRUE(bar.IsCMToolName("texport"));
  EXPECT_TRUE(bar.IsToolInArrayToolnames("tExitModul"));
  EXPECT_FALSE(bar.IsCMToolName("tExitModul"));
  EXPECT_TRUE(bar.IsToolInArrayToolnames("tQvABVersion"));
  EXPECT_FALSE(bar.IsCMToolName("tQvABVersion"));
  EXPECT_FALSE(bar.IsToolInArrayToolnames("bdQVPopup"));
  EXPECT_FALSE(bar.IsToolInArrayToolnames("100000"));
  EXPECT_FALSE(bar.IsToolInArrayToolnames(""));
  EXPECT_FALSE(bar.IsCMToolName(""));
  EXPECT_FALSE(bar.IsCMToolName(" tCut"));
}

TEST(CQVActiveBarTest, InterfaceListsTheNamesThenTheMethodsInOrder) {
  ObjectPtr bar = CreateObject("QVGLOBAL10.cqvactivebar");
  const std::vector<std::pair<std::string, std::string>> names = {
      {"MNU_CUT_TOOLNAME", "tCut"},
      {"MNU_COPY_TOOLNAME", "tCopy"},
      {"MNU_PASTE_TOOLNAME", "tPaste"},
      {"MNU_DELETE_TOOLNAME", "tDelete"},
      {"MNU_EXITMODUL_TOOLNAME", "tExitModul"},
      {"MNU_STARTWINDOWS_TOOLID", "100000"},
      {"MNU_ENDWINDOWS_TOOLID", "100010"},
      {"MNU_QVPOPUP_BANDNAME", "bdQVPopup"},
      {"MNU_SELECTIONLIST_TOOLNAME", "tSelectionlist"},
      {"MNU_SELECTIONLISTSORT_TOOLNAME", "tSelectionlistSort"},
      {"MNU_PROJVERW_TOOLNAME", "tProjVerw"},
      {"MNU_GRPDATKOP_TOOLNAME", "tGrpDatKop"},
      {"MNU_QVINTELLISENSE_TOOLNAME", "tQvIntelliSense"},
      {"MNU_IMPORT_TOOLNAME", "tImport"},
      {"MNU_EXPORT_TOOLNAME", "tExport"},
      {"MNU_ROWINSERT_TOOLNAME", "tRowInsert"},
      {"MNU_QVABVERSION_TOOLNAME", "tQvABVersion"},
  };
  const auto& members = bar->GetClassInfo().members();
  ASSERT_EQ(members.size(), names.size() + 4);
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(members[i].name, names[i].first);
    EXPECT_EQ(members[i].id, static_cast<int32_t>(i + 1));
    EXPECT_EQ(members[i].KindsText(), "get");
    EXPECT_EQ(bar->Get(names[i].first), Variant(names[i].second));
  }
  EXPECT_EQ(members[17].name, "ARRAY_TOOLNAMES");
  EXPECT_EQ(members[18].name, "IsToolInArrayToolnames");
  EXPECT_EQ(members[19].name, "IsCMToolName");
  EXPECT_EQ(members[20].name, "ABKeyCodeToSendKeyStr");
  EXPECT_EQ(members[20].method.param_types,
            std::vector<std::string>{"Integer&"});
}

TEST(CQVActiveBarTest, DispatchReachesMembersByNameOnly) {
  ObjectPtr bar = CreateObject("qvglobal10.CQVActiveBar");
  EXPECT_EQ(bar->Get("mnu_cut_toolname"), Variant("tCut"));
  EXPECT_EQ(bar->Call("ISCMTOOLNAME", {"TCOPY"}), Variant(true));
  EXPECT_EQ(bar->Call("IsToolInArrayToolnames", {"TCOPY"}), Variant(false));
  EXPECT_EQ(bar->Get("Array_ToolNames").ToArray().size(), 12u);

  Variant args[] = {Variant(int16_t{70})};
  EXPECT_EQ(bar->Invoke("abkeycodetosendkeystr", InvokeKind::kMethod, args),
            Variant("+^{F11}"));
  EXPECT_EQ(args[0], Variant(int16_t{70}));

  EXPECT_TRUE(testing::RaisesError(
      [&] {
        bar->Call("ABKeyCodeFromKey", {int16_t{65}, int16_t{2}});
      },
      438, "Object doesn't support this property or method"));
  EXPECT_TRUE(testing::RaisesError(
      [&] { bar->Call("ABKeyCodeToSendKeyStr", {int32_t{76}}); }, -2147220504,
      "CQVActiveBar->ABKeyCodeToSendKeyStr: Nicht zuweisbarer KeyCode 76"));
}

}  // namespace
}  // namespace qv
