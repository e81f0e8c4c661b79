// CQvConnection::convertTable: new columns in the data table, the records
// kept with their values, the record templates dropped, the version written,
// every argument error, and all or nothing when anything fails.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"

namespace qv {
namespace {

using ds::ColumnDef;
using ds::QvRecordset;
using testing::RaisesError;
using Rows = std::vector<std::vector<Variant>>;

class ConvertTableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db_.AddBuildingAndRoom();
    con().setConnectionVersion(9);
  }

  CQvConnection& con() { return db_.connection(); }
  ds::DbCatalog catalog() { return ds::DbCatalog(db_.db()); }

  void AddRooms(int count) {
    ds::DbConnection::Transaction transaction(db_.db());
    std::shared_ptr<QvRecordset> rs = db_.OpenRecordset("raum");
    for (int i = 0; i < count; ++i) {
      rs->clearVars();
      rs->setValue("Gebaeude", fmt::format("G{}", i / 100));
      rs->setValue("Raum", fmt::format("R{:05}", i));
      rs->setValue("Flaeche", i * 0.25);
      rs->setValue("Bezeichnung", fmt::format("Raum Nr. {}", i));
      rs->insertRecord();
    }
    transaction.Commit();
  }

  // Every record of a table, field by field, in key order.
  Rows Records(const std::string& table) {
    std::shared_ptr<QvRecordset> rs = db_.OpenRecordset(table);
    rs->readBlock(0, true);
    Rows rows;
    for (int32_t r = 0; r < rs->getRecordCount(); ++r) {
      std::vector<Variant> row;
      for (int16_t f = 0; f < rs->getFieldCount(); ++f) {
        row.push_back(rs->getBlockValue(r, f));
      }
      rows.push_back(std::move(row));
    }
    return rows;
  }

  void AddTemplates() {
    catalog().CreateTable("QvTemplate",
                          {{.name = "Name", .type = 202, .size = 50},
                           {.name = "Nr", .type = 3},
                           {.name = "Daten", .type = 203}},
                          {"Name", "Nr"});
    std::shared_ptr<QvRecordset> rs = db_.OpenRecordset("qvtemplate");
    int nr = 0;
    for (const char* name : {"raum", "RAUM", "gebaeude", "raum_t"}) {
      rs->clearVars();
      rs->setValue("Name", name);
      rs->setValue("Nr", ++nr);
      rs->insertRecord();
    }
  }

  std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    for (const auto& row : Records("qvtemplate")) {
      names.push_back(row[0].ToString());
    }
    return names;
  }

  testing::ProjectDatabase db_;
};

TEST_F(ConvertTableTest, AddsColumnsKeepsTheRecordsAndDropsTheTemplates) {
  AddTemplates();
  AddRooms(3);
  Rows records = Records("raum");
  for (auto& record : records) record.resize(9, kNull);
  const std::vector<ColumnDef> key_table = catalog().Columns("raum");

  SafeArray param{"Hoehe", 3,       "Kurz", 202,    40, "Notiz",
                  203,     "Aktiv", 11,     "Seit", 7};
  con().convertTable(" Raum ", 2, param);

  const std::vector<ColumnDef> expected = {
      {.name = "Gebaeude", .type = 202, .size = 20},
      {.name = "Raum", .type = 202, .size = 20},
      {.name = "Flaeche", .type = 5},
      {.name = "Bezeichnung", .type = 202, .size = 50},
      {.name = "Hoehe", .type = 3},
      {.name = "Kurz", .type = 202, .size = 40},
      {.name = "Notiz", .type = 203},
      {.name = "Aktiv", .type = 11},
      {.name = "Seit", .type = 7}};
  EXPECT_EQ(catalog().Columns("raum_t"), expected);
  EXPECT_EQ(catalog().Columns("raum"), key_table);
  EXPECT_EQ(con().getTableVersion("raum"), 2);
  EXPECT_EQ(con().getConnectionVersion(), 9);
  EXPECT_EQ(TemplateNames(), (std::vector<std::string>{"gebaeude", "raum_t"}));
  EXPECT_EQ(Records("raum"), records);  // the new fields Null
}

TEST_F(ConvertTableTest, AnEmptyParameterArrayOnlyWritesTheVersion) {
  const std::vector<ColumnDef> columns = catalog().Columns("raum_t");
  SafeArray none;
  con().convertTable("RAUM", 7, none);
  EXPECT_EQ(con().getTableVersion("raum"), 7);
  EXPECT_EQ(catalog().Columns("raum_t"), columns);
  // A table needs not exist for its version row.
  SafeArray from_one({}, 1);
  con().convertTable("Neu", 3, from_one);
  EXPECT_EQ(con().getTableVersion("neu"), 3);
}

TEST_F(ConvertTableTest, ArgumentErrorsChangeNothing) {
  struct Case {
    std::string table;
    SafeArray param;
    int32_t number;
    std::string text;
  };
  std::vector<Case> cases = {
      {"raum", {"A", 202}, 2, "too few arguments after pos: 0"},
      {"raum", {"A", 3, "B"}, 2, "too few arguments after pos: 2"},
      {"raum", SafeArray({"A", 3, "B"}, 1), 2,
       "too few arguments after pos: 3"},
      {" Fehlt ", {"A", 3}, 3, "can't open old table for: 'fehlt'"},
      {"fehlt", {"A", 5}, 3, "can't open old table for: 'fehlt'"},
  };
  for (const Variant& type :
       {Variant(5), Variant(2), Variant(4), Variant(205), Variant("Text")}) {
    cases.push_back({"raum", {"A", type}, 2, "unknown field type"});
  }
  AddRooms(3);
  const Rows records = Records("raum");
  const std::vector<ColumnDef> columns = catalog().Columns("raum_t");
  for (Case c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_TRUE(RaisesError([&] { con().convertTable(c.table, 5, c.param); },
                            c.number, c.text, "CQvConnection.convertTable"));
    EXPECT_EQ(catalog().Columns("raum_t"), columns);
    EXPECT_EQ(Records("raum"), records);
    EXPECT_EQ(con().getTableVersion("raum"), 1);
    EXPECT_EQ(con().getTableVersion("fehlt"), 0);
  }
}

TEST_F(ConvertTableTest, AFailureHalfWayLeavesTableRecordsAndVersion) {
  AddTemplates();
  AddRooms(250);
  const Rows records = Records("raum");
  const std::vector<ColumnDef> columns = catalog().Columns("raum_t");
  const std::vector<std::string> templates = TemplateNames();

  // Two valid columns, then a type a conversion does not take.
  SafeArray unknown{"Hoehe", 3, "Kurz", 202, 10, "Breite", 5};
  EXPECT_TRUE(RaisesError([&] { con().convertTable("raum", 2, unknown); }, 2,
                          "unknown field type", "CQvConnection.convertTable"));
  // A valid column, then one the table has already.
  SafeArray duplicate{"Hoehe", 3, "flaeche", 3};
  try {
    con().convertTable("raum", 2, duplicate);
    FAIL() << "no error raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), ds::dberr::kCatalog);
  }
  EXPECT_EQ(con().getTableVersion("raum"), 1);
  // Everything done, then the version row cannot be written.
  ds::DbCatalog(db_.db()).DropTable("qvversions");
  SafeArray valid{"Hoehe", 3};
  EXPECT_THROW(con().convertTable("raum", 2, valid), Error);

  EXPECT_EQ(catalog().Columns("raum_t"), columns);
  EXPECT_EQ(Records("raum"), records);
  EXPECT_EQ(TemplateNames(), templates);
}

TEST_F(ConvertTableTest, TheCachedRecordSetSeesTheNewColumns) {
  AddRooms(2);
  std::shared_ptr<QvRecordset> building = db_.OpenRecordset("gebaeude");
  building->setValue("Gebaeude", "G0");
  building->insertRecord();
  con().setChild("gebaeude", "raum");
  std::shared_ptr<QvRecordset> gebaeude = con().getTable("gebaeude");
  std::shared_ptr<QvRecordset> raum = con().getTable("raum", true);
  ASSERT_EQ(raum->getFieldIndex("Hoehe"), -1);

  SafeArray param{"Hoehe", 3};
  con().convertTable("raum", 2, param);
  EXPECT_EQ(con().getTable("raum"), raum);
  EXPECT_EQ(raum->getFieldIndex("Hoehe"), 4);
  EXPECT_EQ(raum->getParent(), gebaeude);
  raum->readBlock(0, true);
  raum->setValue("Hoehe", 275);
  raum->updateRecord();
  EXPECT_EQ(Records("raum")[0][4], Variant(275));
}

TEST_F(ConvertTableTest, ATableWithoutDataTableGetsTheColumnsItself) {
  catalog().CreateTable("liste", {{.name = "Nr", .type = 3}}, {"Nr"});
  SafeArray param{"Text", 203};
  con().convertTable("Liste", 2, param);
  EXPECT_EQ(catalog().Columns("liste"),
            (std::vector<ColumnDef>{{.name = "Nr", .type = 3},
                                    {.name = "Text", .type = 203}}));
  EXPECT_EQ(con().getTableVersion("liste"), 2);
}

TEST_F(ConvertTableTest, ReachedByNameWithTheArrayByReference) {
  Variant param(SafeArray{"Hoehe", 3});
  db_.shared_connection()->Call("CONVERTTABLE", {"raum", 4, param});
  EXPECT_EQ(con().getTableVersion("raum"), 4);
  EXPECT_EQ(catalog().Columns("raum_t").back().name, "Hoehe");
}

}  // namespace
}  // namespace qv
