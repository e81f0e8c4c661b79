// QvRecordset links: children narrowed to the parent's current record over
// the four room levels, read lazily; saved positions; the clipboard rule.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "datasource/record_clipboard.h"
#include "testing/ds_helpers.h"
#include "testing/expect_error.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

using qv::testing::BlockColumn;
using qv::testing::RaisesError;
using qv::testing::RoomDatabase;

class QvRecordsetParentTest : public ::testing::Test {
 protected:
  QvRecordsetParentTest() : levels_(db_.OpenLinkedLevels()) {}

  QvRecordset& level(int i) { return *levels_[i]; }

  RoomDatabase db_{{2, 3, 2, 3}};
  std::vector<std::shared_ptr<QvRecordset>> levels_;
};

TEST_F(QvRecordsetParentTest, ChildrenShowTheRecordsOfTheParentsCurrentRecord) {
  EXPECT_EQ(BlockColumn(level(0), "Gebaeude"),
            (std::vector<std::string>{"G2", "G1"}));
  EXPECT_EQ(BlockColumn(level(1), "Stock"),
            (std::vector<std::string>{"S3", "S2", "S1"}));
  EXPECT_EQ(level(1).getValue("Gebaeude"), Variant("G2"));
  EXPECT_EQ(level(3).getValue("Bezeichnung"), Variant("Raum G2/S3/W2/R3"));
  level(0).moveNext();  // G1
  level(1).moveLast();  // S1
  level(2).moveTo(1);   // W1
  EXPECT_EQ(BlockColumn(level(3), "Raum"),
            (std::vector<std::string>{"R3", "R2", "R1"}));
  EXPECT_EQ(level(3).getKeyValues().ToArray(),
            SafeArray({"G1", "S1", "W1", "R3"}));
  level(0).moveFirst();  // G2: everything below follows
  EXPECT_EQ(level(3).getValue("Bezeichnung"), Variant("Raum G2/S3/W2/R3"));
  EXPECT_EQ(level(2).getParent().get(), &level(1));
}

TEST_F(QvRecordsetParentTest, AParentOffItsBlockLeavesTheChildrenEmpty) {
  level(0).moveLast();
  level(0).moveNext();
  EXPECT_TRUE(level(0).isEOF());
  EXPECT_TRUE(level(1).isBlockEmpty());
  EXPECT_TRUE(level(3).isBlockEmpty());
  EXPECT_EQ(level(3).getValue("Gebaeude"),
            Variant("G1"));  // the leading keys stay
  EXPECT_TRUE(level(3).getValue("Raum").IsEmpty());
  level(0).movePrevious();
  EXPECT_EQ(level(3).getRecordCount(), 3);
}

TEST_F(QvRecordsetParentTest,
       ChildrenAreReadWhenNextUsedNotWhenTheParentMoves) {
  level(0).moveNext();  // G1; its storeys are read at their next use
  db_.con()->Execute(
      "DELETE FROM stock WHERE Gebaeude = 'G1' AND Stock = 'S2'");
  db_.con()->Execute(
      "DELETE FROM stock_t WHERE Gebaeude = 'G1' AND Stock = 'S2'");
  EXPECT_EQ(BlockColumn(level(1), "Stock"),
            (std::vector<std::string>{"S3", "S1"}));
}

TEST_F(QvRecordsetParentTest, AnExplicitReadReplacesTheParentsNarrowing) {
  level(0).moveNext();  // G1
  ASSERT_TRUE(qv::testing::ReadBlock(level(2), {"G2", "S1"}));
  EXPECT_EQ(level(2).getValue("Gebaeude"), Variant("G2"));
  EXPECT_EQ(level(3).getValue("Bezeichnung"), Variant("Raum G2/S1/W2/R3"));
  level(1).moveNext();  // the storey level moves: narrowed again below it
  EXPECT_EQ(level(2).getValue("Gebaeude"), Variant("G1"));
  EXPECT_EQ(level(2).getValue("Stock"), Variant("S2"));
}

TEST_F(QvRecordsetParentTest, ReadBlockOfAStaleChildStartsFromTheParentsKeys) {
  level(0).moveNext();  // G1
  ASSERT_TRUE(level(1).readBlock(1, true));
  EXPECT_EQ(level(1).getValue("Gebaeude"), Variant("G1"));
  EXPECT_EQ(level(1).getRecordCount(), 3);
}

TEST_F(QvRecordsetParentTest, LinksRefuseACycleAndCanBeUndone) {
  EXPECT_TRUE(RaisesError([&] { level(0).setParent(levels_[3]); },
                          err::kInvalidProcedureCall,
                          "a record set cannot be its own parent or ancestor",
                          "QvRecordset.setParent"));
  level(1).setParent(nullptr);
  level(0).moveNext();  // G1: no longer narrows the storeys
  EXPECT_EQ(level(1).getValue("Gebaeude"), Variant("G2"));
}

TEST_F(QvRecordsetParentTest, SavedPositionSurvivesOtherMovesAndReads) {
  level(0).moveNext();
  level(1).moveTo(1);
  level(3).moveLast();  // G1/S2/W2/R1
  Variant pos;
  level(3).saveIterPos(pos);
  level(0).moveFirst();
  level(3).moveTo(1);
  ASSERT_NE(level(3).getValue("Gebaeude"), Variant("G1"));
  EXPECT_TRUE(level(3).loadIterPos(pos));
  EXPECT_EQ(level(3).getKeyValues().ToArray(),
            SafeArray({"G1", "S2", "W2", "R1"}));
  EXPECT_EQ(level(3).getPosition(), 2);
  EXPECT_EQ(level(3).getRecordCount(), 3);
  // A position off the block is restored as such.
  level(3).moveNext();
  level(3).saveIterPos(pos);
  level(3).moveFirst();
  EXPECT_TRUE(level(3).loadIterPos(pos));
  EXPECT_TRUE(level(3).isEOF());
  EXPECT_EQ(level(3).getRecordCount(), 3);
}

TEST_F(QvRecordsetParentTest, LoadingThePositionOfADeletedRecordFails) {
  auto rooms = db_.Open("raum");
  qv::testing::ReadBlock(*rooms, {"G1", "S1"});
  rooms->moveTo(4);
  const Variant key = rooms->getKeyValues();
  Variant pos;
  rooms->saveIterPos(pos);
  rooms->deleteRecord();
  EXPECT_FALSE(rooms->loadIterPos(pos));
  EXPECT_EQ(rooms->getPosition(), 0);
  EXPECT_EQ(rooms->getRecordCount(), 5);
  EXPECT_NE(rooms->getKeyValues(), key);
  EXPECT_FALSE(rooms->loadIterPos(Variant()));
  EXPECT_FALSE(rooms->loadIterPos(Variant(SafeArray{1, true, "G1"})));
}

// The application's clipboard as the record set sees it.
class FakeClipboard : public RecordClipboard {
 public:
  std::shared_ptr<QvRecordset> HeldRecordset() const override { return held; }
  void ReleaseRecordset() override {
    held.reset();
    ++releases;
  }
  std::shared_ptr<QvRecordset> held;
  int releases = 0;
};

TEST_F(QvRecordsetParentTest,
       ClearClipboardOnlyForTheSameTableNameInTheSameCase) {
  auto clipboard = std::make_shared<FakeClipboard>();
  SetCurrentRecordClipboard(clipboard);
  auto held = db_.Open("raum");
  clipboard->held = held;
  auto other_case = std::make_shared<QvRecordset>();
  ASSERT_TRUE(other_case->openTable(db_.con(), "Raum"));
  other_case->clearClipboard();
  db_.Open("stock")->clearClipboard();
  EXPECT_EQ(clipboard->held, held);
  db_.Open("raum")->clearClipboard();
  EXPECT_EQ(clipboard->held, nullptr);
  EXPECT_EQ(clipboard->releases, 1);
  SetCurrentRecordClipboard(nullptr);
  held->clearClipboard();  // no clipboard: nothing to do
}

}  // namespace
}  // namespace qv::ds
