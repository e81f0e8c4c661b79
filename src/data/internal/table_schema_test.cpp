// Table creation through CQvConnection::addTable: the two tables, their keys,
// the version row, every argument error, and that a failed creation leaves
// nothing behind.
#include "data/internal/table_schema.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "datasource/db_catalog.h"
#include "datasource/db_error.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"

namespace qv {
namespace {

using ds::ColumnDef;
using testing::RaisesError;

Variant Desc(std::initializer_list<Variant> items, int32_t lbound = 0) {
  return Variant(SafeArray(items, lbound));
}

ColumnDef Text(const char* name, int32_t size) {
  return {.name = name, .type = ds::kAdVarWChar, .size = size};
}
ColumnDef Of(const char* name, int32_t type) {
  return {.name = name, .type = type};
}

class AddTableTest : public ::testing::Test {
 protected:
  CQvConnection& con() { return db_.connection(); }
  ds::DbCatalog catalog() { return ds::DbCatalog(db_.db()); }

  // Neither table of `name` exists and it has no version.
  void ExpectNothingLeft(const std::string& name) {
    EXPECT_FALSE(catalog().HasTable(name));
    EXPECT_FALSE(catalog().HasTable(name + "_t"));
    EXPECT_EQ(con().getTableVersion(name), 0);
  }

  testing::ProjectDatabase db_;
};

TEST_F(AddTableTest, CreatesKeyTableDataTableAndVersion) {
  con().addTable(" Raum ", 3, Desc({"Gebaeude", 202, 20, "Raum", 202, 20}),
                 Desc({"Flaeche", 5, "Notiz", 203, "Bewohnt", 11, "Seit", 7,
                       "Personen", 2, "Nr", 3, "Hoehe", 4}),
                 false);
  EXPECT_EQ(catalog().Columns("raum"),
            (std::vector<ColumnDef>{Text("Gebaeude", 20), Text("Raum", 20),
                                    Of("OtherFields", 205)}));
  EXPECT_EQ(catalog().Columns("raum_t"),
            (std::vector<ColumnDef>{
                Text("Gebaeude", 20), Text("Raum", 20), Of("Flaeche", 5),
                Of("Notiz", 203), Of("Bewohnt", 11), Of("Seit", 7),
                Of("Personen", 2), Of("Nr", 3), Of("Hoehe", 4)}));
  const std::vector<std::string> keys = {"Gebaeude", "Raum"};
  EXPECT_EQ(catalog().PrimaryKey("raum"), keys);
  EXPECT_EQ(catalog().PrimaryKey("raum_t"), keys);
  EXPECT_EQ(con().getTableVersion("RAUM"), 3);
  EXPECT_EQ(con().getTableAge("raum", 3), QvTableAgeCorrect);
}

// Descriptors may start at any lower bound; only a numeric table numbers
// its last key, in both tables.
TEST_F(AddTableTest, NumericTableWithDescriptorsOfAnyLowerBound) {
  for (bool numeric : {false, true}) {
    SCOPED_TRACE(numeric ? "numeric" : "plain");
    const std::string name = numeric ? "lfd" : "pos";
    con().addTable(name, 1, Desc({"Projekt", 202, 50, "Nr", 3}, 1),
                   Desc({"Text", 202, 10}, 5), numeric);
    const ColumnDef nr = {.name = "Nr", .type = 3, .auto_increment = numeric};
    EXPECT_EQ(catalog().Columns(name),
              (std::vector<ColumnDef>{Text("Projekt", 50), nr,
                                      Of("OtherFields", 205)}));
    EXPECT_EQ(
        catalog().Columns(name + "_t"),
        (std::vector<ColumnDef>{Text("Projekt", 50), nr, Text("Text", 10)}));
  }
}

TEST_F(AddTableTest, ANameWithAQuoteIsOnlyAName) {
  con().addTable("O'Brien\"; DROP TABLE qvversions; --", 2, Desc({"Nr", 3}),
                 Desc({"Text", 203}), false);
  EXPECT_TRUE(catalog().HasTable("o'brien\"; drop table qvversions; --_t"));
  EXPECT_EQ(con().getTableVersion(" O'BRIEN\"; DROP TABLE qvversions; -- "), 2);
  EXPECT_TRUE(catalog().HasTable("qvversions"));
}

struct AddTableCase {
  const char* label;
  std::string name;
  Variant keys;
  Variant data;
  bool numeric;
  int32_t number;
  std::string text;
  std::string source;
};

TEST_F(AddTableTest, ArgumentErrorsInTheirOrder) {
  const Variant keys = Desc({"Gebaeude", 202, 20, "Nr", 3});
  const Variant data = Desc({"Text", 203});
  const std::string add = "CQvConnection.addTable";
  const std::string convert = "CQvConnection.convertTable";
  const std::vector<AddTableCase> cases = {
      {"blank name", "   ", Variant(), Variant(), false, 4, "no tablename",
       add},
      {"no keys", " Raum ", Variant(), data, false, 4,
       "no key data for: 'raum'", add},
      {"empty key array", "raum", Desc({}), data, false, 4,
       "no key data for: 'raum'", add},
      {"no data", "raum", keys, Variant(), false, 4, "no data for: 'raum'",
       add},
      {"empty data before bad keys", "raum", Desc({"A"}), Desc({}), false, 4,
       "no data for: 'raum'", add},
      {"text key without size", "raum", Desc({"Name", 202}), data, false, 2,
       "too few arguments in vKey after pos: 0", convert},
      {"key without type", "raum", Desc({"A", 3, "B"}), data, false, 2,
       "too few arguments in vKey after pos: 2", convert},
      {"position counts from the lower bound", "raum", Desc({"A", 3, "B"}, 1),
       data, false, 2, "too few arguments in vKey after pos: 3", convert},
      {"unknown key type", "raum", Desc({"A", 8}), data, false, 2,
       "unknown key type", add},
      {"long binary key", "raum", Desc({"A", 205}), data, false, 2,
       "unknown key type", add},
      {"bad keys before bad data", "raum", Desc({"A", 99}), Desc({"X", 99}),
       false, 2, "unknown key type", add},
      {"data without type", "raum", keys, Desc({"X", 3, "Y"}), false, 2,
       "too few arguments in vData after pos: 2", convert},
      {"text data without size", "raum", keys, Desc({"X", 202}), false, 2,
       "too few arguments in vData after pos: 0", convert},
      {"unknown data type", "raum", keys, Desc({"X", 999}), false, 2,
       "unknown data type", add},
      {"numeric, one key", "raum", Desc({"Nr", 3}), data, true, 4,
       "numeric table: 'raum' have to have at least 2 keys", add},
      {"numeric, text last", "raum", Desc({"Nr", 3, "Name", 202, 10}), data,
       true, 4, "last key of: 'raum' is not Integer", add},
      {"numeric checks before data", "raum", Desc({"Nr", 3}), Desc({"X", 999}),
       true, 4, "numeric table: 'raum' have to have at least 2 keys", add},
  };
  for (const AddTableCase& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_TRUE(RaisesError(
        [&] { con().addTable(c.name, 1, c.keys, c.data, c.numeric); }, c.number,
        c.text, c.source));
    ExpectNothingLeft("raum");
  }
}

TEST_F(AddTableTest, AFailedCreationLeavesNoTableAndNoVersion) {
  // The key table exists already: the data table, created first, must go
  // again and no version row may stay.
  catalog().CreateTable("raum", {Of("Nr", 3)}, {"Nr"});
  try {
    con().addTable("raum", 4, Desc({"Nr", 3}), Desc({"Text", 203}), false);
    FAIL() << "no error raised";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), ds::dberr::kCatalog);
  }
  EXPECT_FALSE(catalog().HasTable("raum_t"));
  EXPECT_EQ(con().getTableVersion("raum"), 0);
  EXPECT_EQ(catalog().Columns("raum"), std::vector<ColumnDef>{Of("Nr", 3)});
}

TEST_F(AddTableTest, ByNameThroughTheDispatchInterface) {
  db_.shared_connection()->Call("ADDTABLE",
                                {Variant("Wand"), Variant(2), Desc({"Nr", 3}),
                                 Desc({"Text", 203}), Variant(false)});
  EXPECT_TRUE(catalog().HasTable("wand_t"));
  EXPECT_EQ(db_.shared_connection()->Call("getTableVersion", {"wand"}),
            Variant(2));
}

}  // namespace
}  // namespace qv
