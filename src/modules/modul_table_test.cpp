#include "modules/modul_table.h"

#include <gtest/gtest.h>

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

TEST(ModulTableCheckTest, FixedTablePasses) {
  EXPECT_EQ(CheckError(BuildModulTable()), "");
}

TEST(ModulTableCheckTest, CalculationClassNeedsTheRoomBook) {
  auto table = EditedTable("VM", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"VM", "GL"});
  });
  EXPECT_EQ(CheckError(table),
            "In VM wurde der Parameter .m_sRLTCalcModulClass gesetzt, obwohl "
            "EZ nicht zum Modul gehöhrt.");
  // The room book is found without regard to letter case.
  table = EditedTable("VM", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"VM", "ez"});
  });
  EXPECT_EQ(CheckError(table), "");
}

TEST(ModulTableCheckTest, CalculationClassOnMultiInstanceModule) {
  // LP is multi-instance and already includes EZ.
  auto table = EditedTable("LP", [](CQvModulDef& d) {
    d.m_sRLTCalcModulClass = "QVLPKERN10.QvKern";
  });
  EXPECT_EQ(CheckError(table),
            "LP: Darf nicht mehrfach in einem \r\nProjekt vorkommen, weil es "
            "den Raumlistenbaum zum kopieren/löschen\r\nverwendet.");
}

TEST(ModulTableCheckTest, AddingRoomBookToMultiModuleAloneIsAllowed) {
  auto add_ez = [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"JS", "GL", "EZ"});
  };
  EXPECT_EQ(CheckError(EditedTable("JS", add_ez)), "");
  auto table = EditedTable("JS", [&](CQvModulDef& d) {
    add_ez(d);
    d.m_sRLTCalcModulClass = "X.Y";
  });
  EXPECT_EQ(CheckError(table),
            "JS: Darf nicht mehrfach in einem \r\nProjekt vorkommen, weil es "
            "den Raumlistenbaum zum kopieren/löschen\r\nverwendet.");
}

TEST(ModulTableCheckTest, FirstModuleMustBeTheOwnCode) {
  auto table = EditedTable("CE", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"XX", "EZ", "GL"});
  });
  EXPECT_EQ(CheckError(table),
            "CE:  Das ersten Element \r\nim Array m_aModuls entspricht nicht "
            "CE");
  table = EditedTable("CE", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"ce", "EZ", "GL"});
  });
  EXPECT_EQ(CheckError(table), "");
}

TEST(ModulTableCheckTest, SingleEntryModuleListsAreNotChecked) {
  // ZU names LP as its catalogue, which passes only while its module list
  // has one entry; a wrong single entry passes as well.
  EXPECT_EQ(
      CheckError(EditedTable(
          "DX", [](CQvModulDef& d) { d.m_aModuls = MakeStringArray({"XX"}); })),
      "");
  auto table = EditedTable("ZU", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"ZU", "EZ"});
  });
  EXPECT_EQ(CheckError(table),
            "ZU:  Das ersten Element \r\nim Array m_aCatalogs entspricht "
            "nicht ZU");
}

TEST(ModulTableCheckTest, IncludedModuleMustBeSingleInstance) {
  // GL is included by JS first, then by VM, NO and CE.
  auto table = EditedTable("GL", [](CQvModulDef& d) { d.m_bMulti = true; });
  EXPECT_EQ(CheckError(table),
            "GL kommt in JS vor und darf \r\ndeshalb nicht Projekt mehrfach "
            "vorkommen.");
  table = EditedTable("VM", [](CQvModulDef& d) {
    d.m_aModuls = MakeStringArray({"VM", "EZ", "GL", "lp"});
  });
  EXPECT_EQ(CheckError(table),
            "LP kommt in VM vor und darf \r\ndeshalb nicht Projekt mehrfach "
            "vorkommen.");
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
