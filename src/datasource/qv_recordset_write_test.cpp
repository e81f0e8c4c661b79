// QvRecordset writing: inserts, updates and deletes over key/data table
// pairs, written through at once, with the descendants' data rows kept in
// step with the relations' cascades; running numbers; value conversion.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/error.h"
#include "com/variant_date.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/qv_recordset.h"
#include "testing/ds_helpers.h"
#include "testing/expect_error.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

using qv::testing::RaisesError;
using qv::testing::ReadBlock;
using qv::testing::RoomDatabase;

constexpr char kFkText[] =
    "a relation between tables does not allow this change (FOREIGN KEY "
    "constraint failed)";

class QvRecordsetWriteTest : public ::testing::Test {
 protected:
  // The rows of `from` ("table WHERE ...") as a second connection on the
  // file sees them: only what was written through.
  int32_t Count(const std::string& from) {
    DbConnection other;
    other.Open(DbConnection::MakeConnectionString(db_.path()));
    return other.QueryValue("SELECT COUNT(*) FROM " + from).ToLong();
  }

  // Data rows without a key row and key rows without a data row, over the
  // three lower levels.
  int32_t Orphans() {
    const std::vector<std::string> keys{"Gebaeude", "Stock", "Wohnung", "Raum"};
    int32_t orphans = 0;
    for (size_t level = 1; level < keys.size(); ++level) {
      std::string match;
      for (size_t k = 0; k <= level; ++k) {
        match += (k > 0 ? " AND " : "") + ("a." + keys[k]) + " = b." + keys[k];
      }
      const std::string t = keys[level];
      orphans += Count(t + "_t a WHERE NOT EXISTS (SELECT 1 FROM " + t +
                       " b WHERE " + match + ")");
      orphans += Count(t + " a WHERE NOT EXISTS (SELECT 1 FROM " + t +
                       "_t b WHERE " + match + ")");
    }
    return orphans;
  }

  void SetRoom(QvRecordset& rs, const std::vector<std::string>& keys,
               int32_t order_num, const std::string& label) {
    rs.clearVars();
    qv::testing::SetKeys(rs, keys);
    rs.setValue("OrderNum", Variant(order_num));
    rs.setValue("Bezeichnung", Variant(label));
  }

  RoomDatabase db_{{2, 3, 2, 3}};
};

TEST_F(QvRecordsetWriteTest,
       InsertWritesKeyRowAndDataRowAndStandsOnTheNewRecord) {
  auto rs = db_.Open("raum");
  ReadBlock(*rs, {"G1", "S1", "W1"});
  SetRoom(*rs, {"G1", "S1", "W1", "R9"}, 15, "Neu");
  rs->insertRecord();
  EXPECT_EQ(Count("raum WHERE Raum = 'R9' AND OtherFields IS NULL"), 1);
  EXPECT_EQ(
      Count(
          "raum_t WHERE Raum = 'R9' AND OrderNum = 15 AND Bezeichnung = 'Neu'"),
      1);
  EXPECT_EQ(rs->getRecordCount(), 4);
  EXPECT_EQ(rs->getPosition(), 2);  // R3 (0), R2 (10), R9 (15), R1 (20)
  EXPECT_EQ(rs->getValue("Raum"), Variant("R9"));
}

TEST_F(QvRecordsetWriteTest, InsertRefusesOrphansAndExistingKeysInAnyCase) {
  auto rs = db_.Open("raum");
  SetRoom(*rs, {"G9", "S1", "W1", "R1"}, 0, "Waise");
  EXPECT_TRUE(RaisesError([&] { rs->insertRecord(); }, dberr::kConstraint,
                          kFkText, "QvRecordset.insertRecord"));
  EXPECT_EQ(Count("raum_t WHERE Gebaeude = 'G9'"), 0);
  EXPECT_EQ(Count("raum WHERE Gebaeude = 'G9'"), 0);
  SetRoom(*rs, {"g1", "s1", "w1", "r1"}, 0, "Doppelt");
  EXPECT_TRUE(RaisesError(
      [&] { rs->insertRecord(); }, dberr::kConstraint,
      "duplicate key in table 'Raum': Gebaeude, Stock, Wohnung, Raum",
      "QvRecordset.insertRecord"));
  EXPECT_EQ(Count("raum_t"), 36);
}

TEST_F(QvRecordsetWriteTest, UpdateWritesThroughAndKeepsTheRecordCurrent) {
  auto rs = db_.Open("raum");
  ReadBlock(*rs, {"G1", "S1", "W1"});
  ASSERT_EQ(rs->getValue("Raum"), Variant("R3"));
  rs->setValue("OrderNum", Variant(int32_t{99}));
  rs->setValue("Bezeichnung", Variant("Bad"));
  rs->updateRecord();
  EXPECT_EQ(
      Count("raum_t WHERE Gebaeude = 'G1' AND Stock = 'S1' AND Wohnung = 'W1' "
            "AND Raum = 'R3' AND OrderNum = 99 AND Bezeichnung = 'Bad'"),
      1);
  EXPECT_EQ(rs->getPosition(), 2);  // now last: R2, R1, R3
  EXPECT_EQ(rs->getValue("Bezeichnung"), Variant("Bad"));
  rs->moveFirst();
  EXPECT_EQ(rs->getValue("Raum"), Variant("R2"));
}

TEST_F(QvRecordsetWriteTest, RenamingAKeyTakesTheChildrenAlong) {
  auto rs = db_.Open("wohnung");
  ReadBlock(*rs, {"G1", "S1"});
  ASSERT_TRUE(rs->findKey("Wohnung", Variant("W1")));
  rs->setValue("Wohnung", Variant("W7"));
  rs->updateRecord();
  EXPECT_EQ(
      Count("raum_t WHERE Gebaeude = 'G1' AND Stock = 'S1' AND Wohnung = 'W7'"),
      3);
  EXPECT_EQ(Orphans(), 0);
  EXPECT_EQ(rs->getValue("Wohnung"), Variant("W7"));
}

TEST_F(QvRecordsetWriteTest, DeleteRemovesTheDataRowsOfAllDescendants) {
  auto rs = db_.Open("stock");
  ReadBlock(*rs, {"G1"});
  ASSERT_TRUE(rs->findKey("Stock", Variant("S2")));
  rs->deleteRecord();
  EXPECT_EQ(rs->getRecordCount(), 2);
  EXPECT_EQ(rs->getValue("Stock"),
            Variant("S1"));  // the next record: S3, S2, S1
  EXPECT_EQ(Count("stock_t"), 5);
  EXPECT_EQ(Count("wohnung_t WHERE Gebaeude = 'G1' AND Stock = 'S2'"), 0);
  EXPECT_EQ(Count("raum_t"), 30);
  EXPECT_EQ(Orphans(), 0);
  rs->moveNext();
  EXPECT_TRUE(RaisesError([&] { rs->deleteRecord(); }, err::kObjectError1000,
                          "no current record in table 'stock'",
                          "QvRecordset.deleteRecord"));
}

TEST_F(QvRecordsetWriteTest,
       ATableWithoutKeyTakesInsertsButNoUpdatesOrDeletes) {
  db_.con()->Execute("CREATE TABLE nokey (A INTEGER, B VARCHAR(5))");
  auto rs = db_.Open("nokey");
  EXPECT_EQ(rs->getKeyCount(), 0);
  for (int32_t a : {1, 2}) {
    rs->setValue("A", Variant(a));
    rs->insertRecord();
  }
  rs->moveFirst();
  rs->setValue("B", Variant("x"));
  const std::string text =
      "table 'nokey' has no primary key: its records cannot be told apart";
  EXPECT_TRUE(RaisesError([&] { rs->updateRecord(); }, err::kObjectError1000,
                          text, "QvRecordset.updateRecord"));
  EXPECT_TRUE(RaisesError([&] { rs->deleteRecord(); }, err::kObjectError1000,
                          text, "QvRecordset.deleteRecord"));
  EXPECT_EQ(Count("nokey WHERE B IS NULL"), 2);
}

class QvRecordsetValuesTest : public QvRecordsetWriteTest {
 protected:
  void SetUp() override {
    DbCatalog catalog(*db_.con());
    const std::vector<ColumnDef> keys{
        {"Projekt", kAdVarWChar, 10},
        {"Nr", kAdInteger, 0, /*auto_increment=*/true}};
    std::vector<ColumnDef> key_table = keys;
    key_table.push_back({"OtherFields", kAdLongVarBinary});
    std::vector<ColumnDef> data_table = keys;
    data_table.insert(data_table.end(), {{"Text", kAdVarWChar, 5},
                                         {"Anzahl", kAdSmallInt},
                                         {"Aktiv", kAdBoolean},
                                         {"Datum", kAdDate},
                                         {"Faktor", kAdSingle},
                                         {"Wert", kAdDouble},
                                         {"Notiz", kAdLongVarWChar}});
    catalog.CreateTable("pos", key_table, {"Projekt", "Nr"});
    catalog.CreateTable("pos_t", data_table, {"Projekt", "Nr"});
    rs_ = db_.Open("pos");
  }

  void Insert(const std::string& projekt, const Variant& nr) {
    rs_->clearVars();
    rs_->setValue("Projekt", Variant(projekt));
    rs_->setValue("Nr", nr);
    rs_->insertRecord();
  }

  std::shared_ptr<QvRecordset> rs_;
};

TEST_F(QvRecordsetValuesTest, EmptyLastKeyOfANumericTableGetsTheNextNumber) {
  Insert("A", Variant());
  EXPECT_EQ(rs_->getValue("Nr"), Variant(int32_t{1}));
  Insert("A", Variant());
  EXPECT_EQ(rs_->getValue("Nr"), Variant(int32_t{2}));
  Insert("B", Variant(kNull));
  EXPECT_EQ(rs_->getValue("Nr"), Variant(int32_t{1}));
  Insert("A", Variant(int32_t{10}));
  Insert("A", Variant());
  EXPECT_EQ(rs_->getValue("Nr"), Variant(int32_t{11}));
  EXPECT_EQ(Count("pos_t WHERE Projekt = 'A'"), 4);
  EXPECT_EQ(Count("pos"), 5);
}

TEST_F(QvRecordsetValuesTest, ValuesAreStoredWithTheColumnsTypes) {
  rs_->setValue("Projekt", Variant("P"));
  rs_->setValue("Nr", Variant("7"));
  rs_->setValue("Text", Variant(int32_t{12345}));
  rs_->setValue("Anzahl", Variant("-32768"));
  rs_->setValue("Aktiv", Variant(int32_t{1}));
  rs_->setValue("Datum", Variant(MakeDate(2024, 3, 1, 12, 30)));
  rs_->setValue("Faktor", Variant(0.5));
  rs_->setValue("Wert", Variant(int16_t{3}));
  rs_->setValue("Notiz", Variant(std::string(2000, 'x')));
  rs_->insertRecord();
  EXPECT_EQ(Count("pos_t WHERE Aktiv = -1 AND Datum = '2024-03-01 12:30:00'"),
            1);
  auto again = db_.Open("pos");
  EXPECT_EQ(again->getValue("Nr"), Variant(int32_t{7}));
  EXPECT_EQ(again->getValue("Text"), Variant("12345"));
  EXPECT_EQ(again->getValue("Anzahl"), Variant(int16_t{-32768}));
  EXPECT_EQ(again->getValue("Aktiv"), Variant(true));
  EXPECT_EQ(again->getValue("Datum"), Variant(MakeDate(2024, 3, 1, 12, 30)));
  EXPECT_EQ(again->getValue("Faktor"), Variant(0.5f));
  EXPECT_EQ(again->getValue("Wert"), Variant(3.0));
  EXPECT_EQ(again->getValue("Notiz").ToString().size(), 2000u);
}

TEST_F(QvRecordsetValuesTest,
       ValuesThatDoNotFitAreRefusedBeforeAnythingIsWritten) {
  rs_->setValue("Projekt", Variant("P"));
  rs_->setValue("Nr", Variant(int32_t{1}));
  rs_->setValue("Text", Variant("ÄÖÜäö"));  // five characters, ten bytes: fits
  rs_->insertRecord();
  rs_->setValue("Nr", Variant(int32_t{2}));
  const struct {
    const char* column;
    Variant value;
    int32_t number;
    const char* text;
  } kRefused[] = {
      {"Text", Variant("sechs!"), dberr::kConstraint,
       "text too long for column 'Text' of table 'pos': at most 5 characters"},
      {"Anzahl", Variant(int32_t{40000}), dberr::kConstraint,
       "value out of range for column 'Anzahl' of table 'pos': -32768 to "
       "32767"},
      {"Wert", Variant("viel"), err::kTypeMismatch,
       "Type mismatch: column 'Wert' of table 'pos' cannot take String "
       "\"viel\""},
      {"Nr", Variant(3.0e10), err::kOverflow,
       "Overflow: column 'Nr' of table 'pos' cannot take Double 30000000000"},
      {"Projekt", Variant(), dberr::kConstraint,
       "column 'Projekt' of table 'pos' must not be Null"},
  };
  for (const auto& c : kRefused) {
    SCOPED_TRACE(c.column);
    const Variant fitting = rs_->getValue(c.column);
    rs_->setValue(c.column, c.value);
    EXPECT_TRUE(RaisesError([&] { rs_->insertRecord(); }, c.number, c.text,
                            "QvRecordset.insertRecord"));
    rs_->setValue(c.column, fitting);
  }
  EXPECT_EQ(Count("pos_t"), 1);
  EXPECT_EQ(Count("pos"), 1);
}

}  // namespace
}  // namespace qv::ds
