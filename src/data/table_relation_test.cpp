// CQvConnection::setChild and delChild: the foreign key between two key
// tables, its errors, and linked record sets.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "datasource/db_catalog.h"
#include "datasource/qv_recordset.h"
#include "testing/ds_helpers.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"

namespace qv {
namespace {

using ds::ForeignKeyDef;
using ds::QvRecordset;
using testing::RaisesError;

class RelationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    db_.AddBuildingAndRoom();
    AddRecord("gebaeude", {"G1"});
    AddRecord("gebaeude", {"G2"});
    AddRecord("raum", {"G1", "R1", 10.0});
    AddRecord("raum", {"G1", "R2", 20.0});
    AddRecord("raum", {"G2", "R3", 30.0});
  }

  CQvConnection& con() { return db_.connection(); }
  ds::DbCatalog catalog() { return ds::DbCatalog(db_.db()); }

  void AddRecord(const std::string& table, std::vector<Variant> values) {
    std::shared_ptr<QvRecordset> rs = db_.OpenRecordset(table);
    rs->clearVars();
    for (size_t i = 0; i < values.size(); ++i) {
      rs->setFieldValue(static_cast<int16_t>(i), values[i]);
    }
    rs->insertRecord();
  }

  // The second key (or the only one) of every record of a table.
  std::vector<std::string> Names(const std::string& table) {
    std::shared_ptr<QvRecordset> rs = db_.OpenRecordset(table);
    rs->readBlock(0, true);
    return testing::BlockColumn(*rs, rs->getFieldName(rs->getKeyCount() - 1));
  }

  void AddTable(const std::string& name, std::initializer_list<Variant> keys) {
    con().addTable(name, 1, Variant(SafeArray(keys)),
                   Variant(SafeArray{"Text", 203}), false);
  }

  testing::ProjectDatabase db_;
};

TEST_F(RelationTest, RelatesTheKeyTablesByTheParentsKeys) {
  con().setChild(" Gebaeude ", "RAUM");
  const std::vector<ForeignKeyDef> expected = {
      {.name = "raum",
       .related_table = "gebaeude",
       .columns = {{"Gebaeude", "Gebaeude"}},
       .update_rule = ds::kAdRiCascade,
       .delete_rule = ds::kAdRiCascade}};
  EXPECT_EQ(catalog().ForeignKeys("raum"), expected);
  EXPECT_TRUE(catalog().ForeignKeys("raum_t").empty());
}

// Key mismatches, self relations and cycles are refused and relate nothing.
TEST_F(RelationTest, RefusedRelationsChangeNothing) {
  ds::DbCatalog(db_.db()).CreateTable("ohne", {{.name = "Nr", .type = 3}}, {});
  AddTable("zimmer", {"Haus", 202, 20, "Raum", 202, 20});
  AddTable("stock", {"Gebaeude", 202, 20, "Stock", 202, 20});
  AddTable("kammer", {"GEBAEUDE", 202, 20, "Raum", 202, 20});
  // flur and nische have the keys of raum, so only the cycle check stops
  // raum -> flur -> nische -> raum.
  AddTable("flur", {"Gebaeude", 202, 20, "Raum", 202, 20});
  AddTable("nische", {"Gebaeude", 202, 20, "Raum", 202, 20});
  con().setChild("raum", "flur");
  con().setChild("flur", "nische");
  struct Case {
    std::string parent, child, text;
  };
  const std::vector<Case> cases = {
      {"Ohne", "raum", "in parent table: 'ohne' no keys found"},
      {"gebaeude", " OHNE ", "in child table: 'ohne' no keys found"},
      {"raum", "Gebaeude",
       "child table: 'gebaeude' have to have the same count off or mores keys "
       "as the parent table: 'raum'"},
      {"Gebaeude", "Zimmer",
       "column: 0 off the tables: 'gebaeude' and 'zimmer' have not the same "
       "name"},
      {"stock", "raum",
       "column: 1 off the tables: 'stock' and 'raum' have not the same name"},
      // Key names compare with their letter case.
      {"gebaeude", "kammer",
       "column: 0 off the tables: 'gebaeude' and 'kammer' have not the same "
       "name"},
      {" Raum ", "RAUM", "table: 'raum' can not be a child of itself"},
      {"flur", "raum",
       "relation between: 'flur' and 'raum' would close a cycle, 'raum' is "
       "already a parent of 'flur'"},
      {"Nische", "Raum",
       "relation between: 'nische' and 'raum' would close a cycle, 'raum' is "
       "already a parent of 'nische'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_TRUE(RaisesError([&] { con().setChild(c.parent, c.child); }, 5,
                            c.text, "CQvConnection.setChild"));
  }
  for (const char* table : {"raum", "gebaeude", "zimmer", "kammer", "ohne"}) {
    EXPECT_TRUE(catalog().ForeignKeys(table).empty()) << table;
  }
  // Inserts still work through the chain that stands.
  AddRecord("flur", {"G1", "R1"});
  AddRecord("nische", {"G1", "R1"});
  EXPECT_EQ(Names("nische"), std::vector<std::string>({"R1"}));
}

TEST_F(RelationTest, OpenedWithParentTheChildFollowsTheParent) {
  // The record sets are open before the relation is made.
  std::shared_ptr<QvRecordset> gebaeude = con().getTable("Gebaeude");
  con().setChild("gebaeude", "raum");
  std::shared_ptr<QvRecordset> raum = con().getTable("Raum", true);
  ASSERT_EQ(raum->getParent(), gebaeude);
  gebaeude->readBlock(0, true);
  EXPECT_EQ(raum->getRecordCount(), 2);
  EXPECT_EQ(raum->getValue("Raum"), Variant("R1"));
  gebaeude->moveNext();
  EXPECT_EQ(raum->getRecordCount(), 1);
  EXPECT_EQ(raum->getValue("Raum"), Variant("R3"));
}

TEST_F(RelationTest, DelChildRemovesTheRelationBetweenTheTwoTables) {
  AddTable("haus", {"Gebaeude", 202, 20});
  AddRecord("haus", {"G1"});
  AddRecord("haus", {"G2"});
  con().setChild("gebaeude", "raum");
  EXPECT_TRUE(RaisesError([&] { con().delChild("haus", "raum"); }, 6,
                          "there is no relation between : 'haus' and 'raum'"));
  EXPECT_EQ(catalog().ForeignKeys("raum").size(), 1u);
  con().delChild(" GEBAEUDE", "Raum ");
  EXPECT_TRUE(catalog().ForeignKeys("raum").empty());

  EXPECT_TRUE(RaisesError([&] { con().delChild("Gebaeude", "Raum"); }, 6,
                          "there is no relation between : 'gebaeude' and "
                          "'raum'",
                          "CQvConnection.delChild"));
}

}  // namespace
}  // namespace qv
