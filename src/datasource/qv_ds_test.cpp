// QvDs: loading a record set's block, stable sorting, ordinals, finding rows
// by column values and writing a renumbering back to the table.
#include "datasource/qv_ds.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/ds_helpers.h"
#include "testing/expect_error.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

using qv::testing::BlockColumn;
using qv::testing::RaisesError;
using qv::testing::ReadBlock;

class QvDsTest : public ::testing::Test {
 protected:
  // The storeys of G1 in block order: S3 (OrderNum 0), S2 (10), S1 (20).
  void SetUp() override {
    storeys_ = db_.Open("stock");
    ReadBlock(*storeys_, {"G1"});
    ds_.loadFromRecordset(storeys_, {"Gebaeude", "Stock", "OrderNum"});
  }

  // The storeys of G1 as a record set of its own reads them.
  std::vector<std::string> StoreysInOrder() {
    auto other = db_.Open("stock");
    ReadBlock(*other, {"G1"});
    return BlockColumn(*other, "Stock");
  }

  // The record numbers of ds_ in sorted order.
  std::vector<int32_t> Records() {
    std::vector<int32_t> records;
    for (int32_t i = 0; i < ds_.getRowCount(); ++i)
      records.push_back(ds_.recordForOrdinal(i));
    return records;
  }

  qv::testing::RoomDatabase db_{{2, 3, 2, 3}};
  std::shared_ptr<QvRecordset> storeys_;
  QvDs ds_;
};

TEST_F(QvDsTest, LoadsTheCurrentBlockWithoutMovingTheRecordSet) {
  auto rooms = db_.Open("raum");
  ReadBlock(*rooms, {"G2", "S1", "W1"});
  rooms->moveTo(1);
  QvDs ds;
  ds.loadFromRecordset(rooms, {"Raum", "Bezeichnung"});
  EXPECT_EQ(ds.getRowCount(), 3);
  EXPECT_EQ(ds.getColumnCount(), 2);
  EXPECT_EQ(ds.getValue(0, "raum"), Variant("R3"));
  EXPECT_EQ(ds.getValue(2, 1), Variant("Raum G2/S1/W1/R1"));
  EXPECT_EQ(rooms->getPosition(), 1);
  EXPECT_TRUE(RaisesError(
      [&] {
        ds.loadFromRecordset(rooms, {"Raum", "Nope"});
      },
      err::kObjectError1000, "field 'Nope' not found in table 'raum'",
      "QvDs.loadFromRecordset"));
  EXPECT_EQ(ds.getRowCount(), 3);  // unchanged by the failed load
  EXPECT_TRUE(RaisesError([&] { ds.getValue(3, 0); }, err::kSubscriptOutOfRange,
                          "Subscript out of range", "QvDs.getValue"));
  EXPECT_TRUE(
      RaisesError([&] { ds.getValue(0, "Stock"); }, err::kObjectError1000,
                  "column 'Stock' not found in the data set", "QvDs.getValue"));
}

TEST_F(QvDsTest, SortIsStableNullFirstThenNumbersThenTextAndMapsOrdinals) {
  ds_.setRowValue(0, "OrderNum", Variant(int32_t{5}));
  ds_.setRowValue(1, "OrderNum", Variant(int32_t{5}));
  ds_.setRowValue(2, "OrderNum", Variant(int32_t{1}));
  ds_.sortBy("OrderNum");
  EXPECT_EQ(Records(),
            (std::vector<int32_t>{2, 0, 1}));  // equal values keep their order
  EXPECT_EQ(ds_.ordinalForRecord(0), 1);
  EXPECT_EQ(ds_.ordinalForRecord(2), 0);
  EXPECT_EQ(ds_.recordForOrdinal(3), -1);
  EXPECT_EQ(ds_.ordinalForRecord(-1), -1);
  EXPECT_EQ(ds_.getValue(0, "Stock"),
            Variant("S3"));  // records keep their numbers
  ds_.setRowValue(0, "Stock", Variant("b"));
  ds_.setRowValue(1, "Stock", Variant("B"));
  ds_.setRowValue(2, "Stock", Variant("a"));
  ds_.sortBy("Stock");
  EXPECT_EQ(Records(), (std::vector<int32_t>{2, 0, 1}));
  ds_.setRowValue(0, "Stock", Variant(kNull));
  ds_.setRowValue(1, "Stock", Variant(int32_t{7}));
  ds_.sortBy("Stock");
  EXPECT_EQ(Records(), (std::vector<int32_t>{0, 1, 2}));
}

// The row of a room found by its four keys, -1 if none.
int32_t FindRoom(QvDs& ds, const std::string& room) {
  return ds.findRow({0, 1, 2, 3}, {Variant("G2"), Variant("S1"), Variant("W2"),
                                   Variant(room)});
}

TEST_F(QvDsTest, FindRowByTheValuesOfSomeColumns) {
  auto rooms = db_.Open("raum");
  QvDs ds;
  ds.loadFromRecordset(rooms,
                       {"Gebaeude", "Stock", "Wohnung", "Raum", "OrderNum"});
  ASSERT_EQ(ds.getRowCount(), 36);
  const int32_t row = ds.findRow({0, 1, 2, 3}, {Variant("g2"), Variant("s1"),
                                                Variant("w2"), Variant("r1")});
  ASSERT_GE(row, 0);
  EXPECT_EQ(rooms->getBlockValue(row, 3), Variant("R1"));
  EXPECT_EQ(rooms->getBlockValue(row, 0), Variant("G2"));
  EXPECT_EQ(FindRoom(ds, "R4"), -1);
  EXPECT_EQ(ds.findRow({3}, {Variant(kNull)}), -1);
  // The 12 rooms R3 (OrderNum 0) and the 12 rooms R2 come first.
  EXPECT_EQ(ds.findRow({4, 3}, {Variant("20"), Variant("r1")}),
            24);  // numbers as text
  ds.setRowValue(row, "Raum", Variant("R9"));
  EXPECT_EQ(FindRoom(ds, "R9"), row);
  EXPECT_EQ(FindRoom(ds, "R1"), -1);
  EXPECT_TRUE(RaisesError([&] { ds.findRow({5}, {Variant(1)}); },
                          err::kSubscriptOutOfRange, "Subscript out of range",
                          "QvDs.findRow"));
}

TEST_F(QvDsTest, RenumberingWritesTheChangedOrderNumbersBack) {
  storeys_->moveTo(1);  // S2
  ds_.beginRenumber();
  ds_.setRowValue(0, "OrderNum", Variant(int32_t{30}));  // S3 last
  ds_.setRowValue(2, "OrderNum", Variant(int32_t{5}));   // S1 first
  ds_.endRenumber();
  EXPECT_EQ(StoreysInOrder(), (std::vector<std::string>{"S1", "S2", "S3"}));
  EXPECT_EQ(storeys_->getValue("Stock"),
            Variant("S2"));  // read again, same record
  EXPECT_EQ(storeys_->getPosition(), 1);
  EXPECT_EQ(storeys_->getBlockValue(0, 1), Variant("S1"));
}

TEST_F(QvDsTest, RenumberingNeedsItsBeginningAndKeysAndFailsWritingNothing) {
  EXPECT_TRUE(RaisesError([&] { ds_.endRenumber(); }, err::kObjectError1000,
                          "no renumbering has begun", "QvDs.endRenumber"));
  QvDs without_key;
  without_key.loadFromRecordset(storeys_, {"Gebaeude", "OrderNum"});
  without_key.beginRenumber();
  without_key.setRowValue(0, "OrderNum", Variant(int32_t{1}));
  EXPECT_TRUE(RaisesError(
      [&] { without_key.endRenumber(); }, err::kObjectError1000,
      "the data set does not hold the key column 'Stock' of table 'stock'",
      "QvDs.endRenumber"));
  QvDs without_order;
  without_order.loadFromRecordset(storeys_, {"Gebaeude", "Stock"});
  EXPECT_TRUE(RaisesError(
      [&] { without_order.beginRenumber(); }, err::kObjectError1000,
      "column 'OrderNum' not found in the data set", "QvDs.beginRenumber"));
  // A renumbering that fails writes nothing.
  ds_.beginRenumber();
  ds_.setRowValue(0, "OrderNum", Variant(int32_t{30}));
  ds_.setRowValue(2, "OrderNum", Variant("oben"));
  EXPECT_TRUE(RaisesError(
      [&] { ds_.endRenumber(); }, err::kTypeMismatch,
      "Type mismatch: column 'OrderNum' of table 'stock' cannot take String "
      "\"oben\"",
      "QvDs.endRenumber"));
  EXPECT_EQ(StoreysInOrder(), (std::vector<std::string>{"S3", "S2", "S1"}));
}

TEST_F(QvDsTest, MembersAreReachedByName) {
  ObjectPtr ds = CreateObject("qvglobal10.QvDs");
  ds->Call("loadFromRecordset",
           {Variant(storeys_), Variant(SafeArray{"Stock", "OrderNum"})});
  ds->Call("sortBy", {Variant("Stock")});
  EXPECT_EQ(ds->Call("recordForOrdinal", {Variant(int32_t{0})}),
            Variant(int32_t{2}));
  EXPECT_EQ(ds->Call("getValue", {Variant(int32_t{2}), Variant("Stock")}),
            Variant("S1"));
  EXPECT_EQ(ds->Call("getValue", {Variant(int32_t{2}), Variant(int16_t{1})}),
            Variant(int32_t{20}));
  EXPECT_EQ(
      ds->Call("findRow", {Variant(SafeArray{0}), Variant(SafeArray{"s2"})}),
      Variant(int32_t{1}));
}

}  // namespace
}  // namespace qv::ds
