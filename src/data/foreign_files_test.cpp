// Project files made by other programs or converted from older files: the
// version and template tables are read by name without regard to letter
// case whatever their column declarations say, and tables this library
// creates name their primary keys as the suite expects.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "testing/project_database.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

using Rows = std::vector<std::pair<std::string, int32_t>>;

// A file whose "qvversions" and "QvTemplate" were declared without
// COLLATE NOCASE, holding the table "alt" with its version row spelt "Alt_T"
// and a record template under "ALT".
class ForeignFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    {
      ds::DbConnection::CreateDatabase(path_);
      ds::DbConnection raw;
      raw.Open(ds::DbConnection::MakeConnectionString(path_));
      raw.Execute("DROP TABLE qvversions");
      raw.Execute(
          "CREATE TABLE qvversions (Name VARCHAR(255) PRIMARY KEY, "
          "Version INTEGER)");
      raw.Execute("CREATE TABLE QvTemplate (Name VARCHAR(50), Daten TEXT)");
      raw.Execute("INSERT INTO QvTemplate VALUES ('ALT', 'x'), ('neu', 'y')");
    }
    con_ = container_.getQvProjectConnection(path_);
    con_->addTable("Alt", 7, Variant(SafeArray{"Nr", 3}),
                   Variant(SafeArray{"Text", 203}), false);
    Db().Execute("UPDATE qvversions SET Name = 'Alt_T' WHERE Name = 'alt_t'");
  }
  void TearDown() override { container_.closeQvConnection(con_); }

  ds::DbConnection& Db() { return *con_->m_conConnection; }
  Rows Versions() {
    Rows rows;
    for (const auto& row :
         Db().Query("SELECT Name, Version FROM qvversions ORDER BY Name")) {
      rows.emplace_back(row[0].ToString(), row[1].ToLong());
    }
    return rows;
  }
  std::vector<std::string> Templates() {
    std::vector<std::string> names;
    for (const auto& row :
         Db().Query("SELECT Name FROM QvTemplate ORDER BY Name")) {
      names.push_back(row[0].ToString());
    }
    return names;
  }

  testing::TempDir dir_;
  std::string path_ = dir_.File("Fremd_VM.qv3");
  CQvDbContainer container_;
  std::shared_ptr<CQvConnection> con_;
};

TEST_F(ForeignFileTest, VersionRowsAndTemplatesAreFoundInAnyLetterCase) {
  for (const char* name : {"alt", " ALT ", "Alt"}) {
    EXPECT_EQ(con_->getTableVersion(name), 7) << name;
  }
  EXPECT_EQ(con_->getTableAge("ALT", 7), QvTableAgeCorrect);
  EXPECT_EQ(con_->getTableAge("alt", 8), QvTableAgeOlder);
  EXPECT_EQ(con_->getTableAge("alt", 6), QvTableAgeNewer);
  EXPECT_EQ(Versions(), (Rows{{"Alt_T", 7}}));
  // A conversion updates that row and drops the template.
  SafeArray column{"Neu", 3};
  con_->convertTable("alt", 8, column);
  EXPECT_EQ(Versions(), (Rows{{"Alt_T", 8}}));
  EXPECT_EQ(Templates(), std::vector<std::string>({"neu"}));
  SafeArray none;
  con_->convertTable("ALT", 9, none);
  EXPECT_EQ(Versions(), (Rows{{"Alt_T", 9}}));
}

TEST(PrimaryKeyNameTest, BothKeysAreNamedAfterTheFirstKeyColumn) {
  testing::ProjectDatabase db;
  CQvConnection& con = db.connection();
  con.addTable("Gebaeude", 1, Variant(SafeArray{"Gebaeude", 202, 20}),
               Variant(SafeArray{"Text", 203}), false);
  con.addTable("Raum", 1,
               Variant(SafeArray{"Gebaeude", 202, 20, "Raum", 202, 20}),
               Variant(SafeArray{"Text", 203}), false);
  ds::DbCatalog catalog(db.db());
  // The key table is rebuilt when it gets its parent; the name stays.
  con.setChild("gebaeude", "raum");
  for (const char* table : {"gebaeude", "gebaeude_t", "raum", "raum_t"}) {
    EXPECT_EQ(catalog.PrimaryKeyName(table), "Gebaeude") << table;
  }
  EXPECT_EQ(catalog.PrimaryKey("raum"),
            std::vector<std::string>({"Gebaeude", "Raum"}));
  // Tables of other programs may have an unnamed key or none.
  EXPECT_EQ(catalog.PrimaryKeyName("qvversions"), "");
}

}  // namespace
}  // namespace qv
