#include "modules/modul_table.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <thread>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "messages/error_collector.h"
#include "modules/cqv_modul_defs.h"

namespace qv {
namespace {

// The fixed table with the record of `code` handed to `edit`.
template <class Edit>
ModulTable EditedTable(const std::string& code, Edit edit) {
  ModulTable table = BuildModulTable();
  for (auto& def : table) {
    if (def->m_sExtension == code) edit(*def);
  }
  return table;
}

// The description of the error CheckModulTable raises, "" when none.
std::string CheckError(const ModulTable& table) {
  try {
    CheckModulTable(table);
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), err::kObjectError1000);
    EXPECT_EQ(e.source(), "");
    return e.description();
  }
  return "";
}

TEST(ModulTableCheckTest, EditedTablesPassOrFailWithTheirTexts) {
  using Edit = std::function<void(CQvModulDef&)>;
  auto modules = [](std::initializer_list<const char*> codes) -> Edit {
    return
        [list = MakeStringArray(codes)](CQvModulDef& d) { d.m_aModuls = list; };
  };
  const std::string multi_tree =
      ": Darf nicht mehrfach in einem \r\nProjekt vorkommen, weil es den "
      "Raumlistenbaum zum kopieren/löschen\r\nverwendet.";
  const struct {
    const char* code;
    Edit edit;
    std::string error;  // "" when the table passes
  } kCases[] = {
      // A calculation class needs the room book, found in any letter case.
      {"VM", modules({"VM", "GL"}),
       "In VM wurde der Parameter .m_sRLTCalcModulClass gesetzt, obwohl EZ "
       "nicht zum Modul gehöhrt."},
      {"VM", modules({"VM", "ez"}), ""},
      // LP is multi-instance and already includes EZ.
      {"LP",
       [](CQvModulDef& d) { d.m_sRLTCalcModulClass = "QVLPKERN10.QvKern"; },
       "LP" + multi_tree},
      {"JS", modules({"JS", "GL", "EZ"}), ""},
      {"JS",
       [&](CQvModulDef& d) {
         modules({"JS", "GL", "EZ"})(d);
         d.m_sRLTCalcModulClass = "X.Y";
       },
       "JS" + multi_tree},
      {"CE", modules({"XX", "EZ", "GL"}),
       "CE:  Das ersten Element \r\nim Array m_aModuls entspricht nicht CE"},
      {"CE", modules({"ce", "EZ", "GL"}), ""},
      // Single-entry lists are not checked; ZU names LP as its catalogue,
      // which passes only while its module list has one entry.
      {"DX", modules({"XX"}), ""},
      {"ZU", modules({"ZU", "EZ"}),
       "ZU:  Das ersten Element \r\nim Array m_aCatalogs entspricht nicht ZU"},
      // GL is included by JS first, then by VM, NO and CE.
      {"GL", [](CQvModulDef& d) { d.m_bMulti = true; },
       "GL kommt in JS vor und darf \r\ndeshalb nicht Projekt mehrfach "
       "vorkommen."},
      {"VM", modules({"VM", "EZ", "GL", "lp"}),
       "LP kommt in VM vor und darf \r\ndeshalb nicht Projekt mehrfach "
       "vorkommen."},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.code);
    EXPECT_EQ(CheckError(EditedTable(c.code, c.edit)), c.error);
  }
}

// Resets this thread's table and errors around each test.
class ThreadModulTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ResetThreadModulTableForTesting();
    ErrorCollector::Clear();
  }
  void TearDown() override {
    ResetThreadModulTableForTesting();
    ErrorCollector::Clear();
  }
};

TEST_F(ThreadModulTableTest, BuiltOncePerThread) {
  int builds = 0;
  ResetThreadModulTableForTesting([&] {
    ++builds;
    return BuildModulTable();
  });
  CQvModulDefs first;
  CQvModulDefs second;
  EXPECT_EQ(builds, 1);
  EXPECT_EQ(ErrorCollector::Count(), 0u);

  const CQvModulDef* here = ThreadModulTable()[0].get();
  const CQvModulDef* there = nullptr;
  std::thread other([&] { there = CQvModulDefs().GetQvModulDef("DX").get(); });
  other.join();
  EXPECT_NE(there, nullptr);
  EXPECT_NE(there, here);
  EXPECT_EQ(builds, 1);  // the other thread built the fixed rows
}

TEST_F(ThreadModulTableTest, FaultyTableGoesToCollectorAndIsNotRebuilt) {
  int builds = 0;
  ResetThreadModulTableForTesting([&] {
    ++builds;
    return EditedTable("VM", [](CQvModulDef& d) {
      d.m_aModuls = MakeStringArray({"VM", "GL"});
    });
  });
  CQvModulDefs defs;
  ASSERT_EQ(ErrorCollector::Count(), 1u);
  const Error error = *ErrorCollector::LastError();
  EXPECT_EQ(error.number(), -2147220504);
  EXPECT_EQ(error.source(), "modQvModulDefs->Init: ");
  EXPECT_EQ(error.description(),
            "In VM wurde der Parameter .m_sRLTCalcModulClass gesetzt, obwohl "
            "EZ nicht zum Modul gehöhrt.");

  CQvModulDefs again;
  EXPECT_EQ(builds, 1);
  EXPECT_EQ(ErrorCollector::Count(), 1u);
  // The rows built before the check stay in use, the faulty one included.
  EXPECT_EQ(again.GetQvModulDef("VM")->m_aModuls.ToArray().size(), 2u);
}

TEST_F(ThreadModulTableTest, FailingFactoryLeavesAnEmptyTable) {
  ResetThreadModulTableForTesting(
      []() -> ModulTable { throw Error(err::kTypeMismatch, "Row", "Bad"); });
  CQvModulDefs defs;
  ASSERT_EQ(ErrorCollector::Count(), 1u);
  EXPECT_EQ(ErrorCollector::LastError()->number(), err::kTypeMismatch);
  EXPECT_EQ(ErrorCollector::LastError()->source(), "modQvModulDefs->Init: Row");
  EXPECT_EQ(defs.GetArrayQvModulDefs().size(), 0u);
  EXPECT_FALSE(defs.IsProjectModul("VM"));
}

}  // namespace
}  // namespace qv
