// QvRecordset: opening, fields, block reads by leading keys, block order,
// moving and finding, and the members reached by name.
#include "datasource/qv_recordset.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "testing/ds_helpers.h"
#include "testing/expect_error.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

using qv::testing::BlockColumn;
using qv::testing::RaisesError;
using qv::testing::ReadBlock;
using qv::testing::RoomDatabase;
using qv::testing::SetKeys;

// 2 buildings x 3 storeys x 2 apartments x 3 rooms; "OrderNum" puts the
// highest key number of each block first.
class QvRecordsetTest : public ::testing::Test {
 protected:
  RoomDatabase db_{{2, 3, 2, 3}};
};

std::string Text(const QvRecordset& rs, const std::string& field) {
  return rs.getValue(field).ToString();
}

TEST_F(QvRecordsetTest,
       PairGivesKeyFieldsThenDataFieldsAndStandsOnFirstRecord) {
  auto rs = db_.Open("raum");
  EXPECT_EQ(rs->getTableName(), "raum");
  EXPECT_EQ(rs->getKeyCount(), 4);
  ASSERT_EQ(rs->getFieldCount(), 6);
  std::vector<std::string> names;
  for (int16_t i = 0; i < 6; ++i) names.push_back(rs->getFieldName(i));
  EXPECT_EQ(names,
            (std::vector<std::string>{"Gebaeude", "Stock", "Wohnung", "Raum",
                                      "OrderNum", "Bezeichnung"}));
  EXPECT_EQ(rs->getFieldIndex("bezeichnung"), 5);
  EXPECT_EQ(rs->getFieldIndex("OtherFields"), -1);
  // Whole table: lowest "OrderNum" (the R3 rooms) first, then by key.
  EXPECT_EQ(Text(*rs, "Bezeichnung"), "Raum G1/S1/W1/R3");
  EXPECT_EQ(rs->getFieldValue(4), Variant(int32_t{0}));
  EXPECT_EQ(rs->getRecordCount(), 36);
  EXPECT_EQ(rs->getPosition(), 0);
  EXPECT_EQ(rs->getKeyValues().ToArray(), SafeArray({"G1", "S1", "W1", "R3"}));
}

TEST_F(QvRecordsetTest, PlainTableGivesPrimaryKeyColumnsFirst) {
  DbCatalog(*db_.con())
      .CreateTable(
          "plain",
          {{"Wert", kAdDouble}, {"Name", kAdVarWChar, 10}, {"Nr", kAdInteger}},
          {"Nr", "Name"});
  db_.con()->Execute(
      "INSERT INTO plain VALUES (1.5, 'b', 2), (2.5, 'a', 2), (0.5, 'z', 1)");
  auto rs = db_.Open("plain");
  EXPECT_EQ(rs->getKeyCount(), 2);
  std::vector<std::string> names;
  for (int16_t i = 0; i < 3; ++i) names.push_back(rs->getFieldName(i));
  EXPECT_EQ(names, (std::vector<std::string>{"Nr", "Name", "Wert"}));
  EXPECT_EQ(BlockColumn(*rs, "Wert"),
            (std::vector<std::string>{"0.5", "2.5", "1.5"}));  // by Nr, Name
}

TEST_F(QvRecordsetTest, OpenTableReportsFailureByItsResult) {
  QvRecordset rs;
  EXPECT_FALSE(rs.openTable(db_.con(), "nosuchtable"));
  EXPECT_FALSE(rs.openTable(nullptr, "raum"));
  EXPECT_FALSE(rs.openTable(db_.con(), ""));
  EXPECT_EQ(rs.getTableName(), "");
  EXPECT_EQ(rs.getFieldCount(), 0);
  EXPECT_TRUE(rs.isEOF());
  auto closed = std::make_shared<DbConnection>();
  EXPECT_FALSE(rs.openTable(closed, "raum"));
  EXPECT_TRUE(RaisesError([&] { rs.insertRecord(); }, err::kObjectError1000,
                          "the record set is not open",
                          "QvRecordset.insertRecord"));
}

TEST_F(QvRecordsetTest, ReadBlockByOneToFourLeadingKeys) {
  auto rs = db_.Open("raum");
  const struct {
    int16_t keys;
    int32_t records;
  } kCases[] = {{1, 18}, {2, 6}, {3, 3}, {4, 1}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.keys);
    SetKeys(*rs, {"G2", "S1", "W2", "R1"});
    EXPECT_TRUE(rs->readBlock(c.keys, true));
    EXPECT_EQ(rs->getRecordCount(), c.records);
  }
  EXPECT_EQ(rs->getKeyValues().ToArray(), SafeArray({"G2", "S1", "W2", "R1"}));
}

TEST_F(QvRecordsetTest, BlockOrderIsOrderNumThenKeyAtEveryLevel) {
  auto rs = db_.Open("stock");
  auto storeys = [&] {
    ReadBlock(*rs, {"G1"});
    return BlockColumn(*rs, "Stock");
  };
  EXPECT_EQ(storeys(), (std::vector<std::string>{"S3", "S2", "S1"}));
  // Equal order numbers fall back to the key.
  db_.con()->Execute("UPDATE stock_t SET OrderNum = 0");
  EXPECT_EQ(storeys(), (std::vector<std::string>{"S1", "S2", "S3"}));
  EXPECT_TRUE(RaisesError([&] { rs->readBlock(3, true); },
                          err::kInvalidProcedureCall,
                          "key count 3 out of range 0 to 2 for table 'stock'",
                          "QvRecordset.readBlock"));
}

TEST_F(QvRecordsetTest, TextKeysIgnoreCaseAndAnEmptyBlockEmptiesTheRest) {
  auto rs = db_.Open("raum");
  EXPECT_TRUE(ReadBlock(*rs, {"g1", "s2", "w1"}));
  EXPECT_EQ(rs->getRecordCount(), 3);
  EXPECT_EQ(Text(*rs, "Wohnung"), "W1");  // the stored form
  EXPECT_TRUE(rs->findKey("raum", Variant("r2")));
  EXPECT_EQ(Text(*rs, "Raum"), "R2");
  EXPECT_FALSE(ReadBlock(*rs, {"G1", "S9"}));
  EXPECT_TRUE(rs->isBlockEmpty());
  EXPECT_TRUE(rs->isEOF());
  EXPECT_TRUE(rs->isBOF());
  EXPECT_EQ(rs->getRecordCount(), 0);
  EXPECT_EQ(rs->getPosition(), -1);
  EXPECT_EQ(rs->getKeyValues().ToArray(),
            SafeArray({"G1", "S9", Variant(), Variant()}));
  EXPECT_TRUE(rs->getValue("Bezeichnung").IsEmpty());
}

TEST_F(QvRecordsetTest, MovesAndFindKeyStayInsideTheBlockUntilReread) {
  auto rs = db_.Open("raum");
  ReadBlock(*rs, {"G1", "S1", "W1"});
  rs->moveLast();
  EXPECT_EQ(Text(*rs, "Raum"), "R1");
  EXPECT_EQ(rs->getPosition(), 2);
  rs->moveNext();
  EXPECT_TRUE(rs->isEOF());
  EXPECT_FALSE(rs->isBOF());
  EXPECT_EQ(rs->getPosition(), -1);
  EXPECT_EQ(Text(*rs, "Raum"), "R1");  // the buffer keeps the last record
  rs->moveNext();
  rs->movePrevious();
  EXPECT_EQ(Text(*rs, "Raum"), "R1");
  rs->moveTo(1);
  EXPECT_EQ(Text(*rs, "Raum"), "R2");
  rs->moveFirst();
  rs->movePrevious();
  EXPECT_TRUE(rs->isBOF());
  rs->movePrevious();
  rs->moveNext();
  EXPECT_EQ(Text(*rs, "Raum"), "R3");
  EXPECT_TRUE(RaisesError([&] { rs->moveTo(3); }, err::kSubscriptOutOfRange,
                          "Subscript out of range", "QvRecordset.moveTo"));
  rs->moveTo(1);
  EXPECT_FALSE(rs->findKey("Wohnung", Variant("W2")));
  EXPECT_EQ(rs->getPosition(), 1);  // not moved
  EXPECT_TRUE(rs->findKey("Raum", Variant("R1")));
  EXPECT_EQ(rs->getPosition(), 2);
  EXPECT_TRUE(rs->findKey("OrderNum",
                          Variant("10")));  // a numeric text finds the number
  EXPECT_EQ(Text(*rs, "Raum"), "R2");
  EXPECT_TRUE(RaisesError(
      [&] { rs->findKey("Nope", Variant(1)); }, err::kObjectError1000,
      "field 'Nope' not found in table 'raum'", "QvRecordset.findKey"));
  db_.con()->Execute("DELETE FROM raum_t WHERE Raum = 'R2'");
  rs->moveLast();
  EXPECT_TRUE(rs->readBlock(3, false));
  EXPECT_EQ(rs->getRecordCount(), 3);  // not read again
  EXPECT_EQ(rs->getPosition(), 0);
  EXPECT_TRUE(rs->readBlock(3, true));
  EXPECT_EQ(rs->getRecordCount(), 2);
}

TEST_F(QvRecordsetTest, BufferTakesAnyValueButObjectsAndArrays) {
  auto rs = db_.Open("raum");
  rs->setFieldValue(5, Variant(int32_t{17}));
  EXPECT_EQ(rs->getFieldValue(5), Variant(int32_t{17}));
  rs->setValue("OrderNum", Variant("text"));
  EXPECT_EQ(rs->getValue("ordernum"), Variant("text"));
  EXPECT_TRUE(RaisesError([&] { rs->setFieldValue(0, Variant(SafeArray{1})); },
                          err::kTypeMismatch, "Type mismatch",
                          "QvRecordset.setFieldValue"));
  EXPECT_TRUE(RaisesError([&] { rs->getFieldValue(6); },
                          err::kSubscriptOutOfRange, "Subscript out of range",
                          "QvRecordset.getFieldValue"));
  rs->clearVars();
  for (int16_t i = 0; i < rs->getFieldCount(); ++i)
    EXPECT_TRUE(rs->getFieldValue(i).IsEmpty());
}

TEST_F(QvRecordsetTest, MembersAreReachedByName) {
  ObjectPtr rs = CreateObject("qvglobal10.QvRecordset");
  EXPECT_EQ(rs->Call("openTable", {Variant(db_.con()), Variant("raum")}),
            Variant(true));
  EXPECT_EQ(rs->Call("getTableName"), Variant("raum"));
  rs->Call("setFieldValue", {Variant(int16_t{0}), Variant("G2")});
  EXPECT_EQ(rs->Call("readBlock", {Variant(int16_t{1})}),
            Variant(true));  // optional reread
  EXPECT_EQ(rs->Call("getRecordCount"), Variant(int32_t{18}));
  std::vector<Variant> args{Variant()};
  rs->Invoke("saveIterPos", InvokeKind::kMethod, args);
  ASSERT_TRUE(args[0].IsArray());
  rs->Call("moveLast");
  EXPECT_EQ(rs->Call("loadIterPos", {args[0]}), Variant(true));
  EXPECT_EQ(rs->Call("getPosition"), Variant(int32_t{0}));
  rs->Call("clearClipboard");
  EXPECT_EQ(rs->Call("getRecordset").ToObject(), rs);
}

TEST_F(QvRecordsetTest, TheConnectionClosesUnderOpenRecordSetsAndOpensAgain) {
  auto rs = db_.Open("raum");
  ASSERT_TRUE(ReadBlock(*rs, {"G1", "S1", "W1"}));
  EXPECT_THROW(rs->insertRecord(),
               Error);  // a duplicate, after preparing write statements
  db_.con()->Close();
  EXPECT_EQ(rs->getRecordCount(), 3);  // the block read before stays
  EXPECT_TRUE(RaisesError([&] { rs->readBlock(3, true); }, dberr::kNotOpen,
                          "connection is closed"));
  db_.con()->Open(DbConnection::MakeConnectionString(db_.path()));
  ASSERT_TRUE(ReadBlock(*rs, {"G2", "S1", "W1"}));
  EXPECT_EQ(Text(*rs, "Bezeichnung"), "Raum G2/S1/W1/R3");
}

TEST_F(QvRecordsetTest, QuotesAndSqlInNamesKeysAndValuesAreData) {
  const std::string table = "x\"; DROP TABLE raum; --'";
  DbCatalog(*db_.con())
      .CreateTable(table,
                   {{"K'ey", kAdVarWChar, 40}, {"V\"al", kAdVarWChar, 40}},
                   {"K'ey"});
  auto rs = db_.Open(table);
  const std::string key = "a'b\"c); DELETE FROM raum_t; --";
  const std::string value = "'); DROP TABLE raum_t; --";
  rs->setFieldValue(0, Variant(key));
  rs->setFieldValue(1, Variant(value));
  rs->insertRecord();
  auto again = db_.Open(table);
  again->setFieldValue(0, Variant(key));
  ASSERT_TRUE(again->readBlock(1, true));
  EXPECT_EQ(again->getFieldValue(0), Variant(key));
  EXPECT_EQ(again->getFieldValue(1), Variant(value));
  EXPECT_EQ(db_.con()->QueryValue("SELECT COUNT(*) FROM raum_t"),
            Variant(int32_t{36}));
}

}  // namespace
}  // namespace qv::ds
