// Transactions that a module opens on the connection object the container
// hands out (m_conConnection): nesting, what a rollback takes back from the
// file and from the record sets, the table cache and the clipboard, and the
// rollback of a transaction left open when the connection goes.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/qv_recordset.h"
#include "records/cqv_clipboard.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"

namespace qv {
namespace {

using ds::DbConnection;
using ds::QvRecordset;
using testing::RaisesError;

class CQvConnectionTransactionTest : public ::testing::Test {
 protected:
  CQvConnectionTransactionTest() {
    db_.AddBuildingAndRoom();
    rooms_ = con().getTable("raum");
    AddRoom("R1");
  }

  CQvConnection& con() { return db_.connection(); }
  DbConnection& tx() { return *con().m_conConnection; }

  void AddRoom(const std::string& raum) {
    rooms_->clearVars();
    rooms_->setValue("Gebaeude", Variant("G1"));
    rooms_->setValue("Raum", Variant(raum));
    rooms_->setValue("Bezeichnung", Variant("Raum " + raum));
    rooms_->insertRecord();
  }
  // Rooms of G1 as the file holds them, through a record set of its own.
  int32_t StoredRooms() {
    auto rs = db_.OpenRecordset("raum");
    rs->setValue("Gebaeude", Variant("G1"));
    rs->readBlock(1, true);
    return rs->getRecordCount();
  }
  int32_t BlockRooms() {
    rooms_->setValue("Gebaeude", Variant("G1"));
    rooms_->readBlock(1, false);
    return rooms_->getRecordCount();
  }

  testing::ProjectDatabase db_;
  std::shared_ptr<QvRecordset> rooms_;
};

TEST_F(CQvConnectionTransactionTest, NestedLevelsCommitAndRollBackInOrder) {
  EXPECT_EQ(tx().BeginTrans(), 1);
  AddRoom("R2");
  EXPECT_EQ(tx().BeginTrans(), 2);
  AddRoom("R3");
  tx().RollbackTrans();  // takes R3 back only
  EXPECT_EQ(tx().BeginTrans(), 2);
  AddRoom("R4");
  tx().CommitTrans();
  EXPECT_EQ(tx().TransactionDepth(), 1);
  tx().CommitTrans();
  EXPECT_EQ(StoredRooms(), 3);
  for (const char* raum : {"R1", "R2", "R4"}) {
    EXPECT_TRUE(rooms_->findKey("Raum", Variant(raum))) << raum;
  }
  EXPECT_FALSE(rooms_->findKey("Raum", Variant("R3")));

  // A committed inner level goes with its outer one.
  tx().BeginTrans();
  tx().BeginTrans();
  AddRoom("R5");
  tx().CommitTrans();
  tx().RollbackTrans();
  EXPECT_EQ(StoredRooms(), 3);
  EXPECT_EQ(BlockRooms(), 3);
}

TEST_F(CQvConnectionTransactionTest, EndingWithoutATransactionIsAnError) {
  EXPECT_TRUE(RaisesError([&] { tx().CommitTrans(); }, ds::dberr::kTransaction,
                          "no transaction is open",
                          "DbConnection.CommitTrans"));
  EXPECT_TRUE(RaisesError([&] { tx().RollbackTrans(); },
                          ds::dberr::kTransaction, "no transaction is open",
                          "DbConnection.RollbackTrans"));
  DbConnection closed;
  EXPECT_TRUE(RaisesError([&] { closed.BeginTrans(); }, ds::dberr::kNotOpen,
                          "connection is closed"));
}

TEST_F(CQvConnectionTransactionTest, RollbackTakesRecordsBackFromTheBlock) {
  ASSERT_EQ(BlockRooms(), 1);
  tx().BeginTrans();
  AddRoom("R2");
  AddRoom("R3");
  ASSERT_EQ(BlockRooms(), 3);
  EXPECT_TRUE(rooms_->findKey("Raum", Variant("R1")));
  rooms_->setValue("Bezeichnung", Variant("geändert"));
  rooms_->updateRecord();
  tx().RollbackTrans();

  // The record set stands on R1 again, with its old values.
  EXPECT_EQ(rooms_->getValue("Raum"), Variant("R1"));
  EXPECT_EQ(rooms_->getValue("Bezeichnung"), Variant("Raum R1"));
  EXPECT_EQ(rooms_->getRecordCount(), 1);
  EXPECT_FALSE(rooms_->findKey("Raum", Variant("R3")));
  EXPECT_EQ(StoredRooms(), 1);

  // Standing on a record that the rollback took back: after the block.
  tx().BeginTrans();
  AddRoom("R9");
  EXPECT_EQ(rooms_->getRecordCount(), 2);
  tx().RollbackTrans();
  EXPECT_TRUE(rooms_->isEOF());
  EXPECT_EQ(rooms_->getRecordCount(), 1);
}

TEST_F(CQvConnectionTransactionTest, RollbackTakesBackTablesAndLayouts) {
  auto clipboard = std::make_shared<CQvClipboard>();
  SetCurrentClipboard(clipboard);
  tx().BeginTrans();
  con().addTable("Wand", 1, Variant(SafeArray{"Nr", 3}),
                 Variant(SafeArray{"Text", 203}), false);
  auto walls = con().getTable("wand");
  ASSERT_TRUE(walls);
  clipboard->set_qvrs(walls);
  const int16_t fields = rooms_->getFieldCount();
  SafeArray more{"Hoehe", 3};
  con().convertTable("Raum", 2, more);
  EXPECT_EQ(con().getTable("raum")->getFieldIndex("Hoehe"), fields);
  tx().RollbackTrans();

  EXPECT_EQ(con().getTable("wand"), nullptr);
  EXPECT_EQ(clipboard->qvrs(), nullptr);
  EXPECT_EQ(con().getTableVersion("raum"), 1);
  EXPECT_EQ(con().getTable("raum"), rooms_);
  EXPECT_EQ(rooms_->getFieldIndex("Hoehe"), -1);
  EXPECT_EQ(rooms_->getFieldCount(), fields);
  EXPECT_EQ(BlockRooms(), 1);
  // The cache goes on working: a table opened now is cached once.
  con().addTable("Decke", 1, Variant(SafeArray{"Nr", 3}),
                 Variant(SafeArray{"Text", 203}), false);
  EXPECT_EQ(con().getTable("decke"), con().getTable("DECKE"));
  SetCurrentClipboard(nullptr);
}

TEST(CQvConnectionReleaseTest, ATransactionLeftOpenIsRolledBack) {
  testing::ProjectDatabase db;
  db.AddBuildingAndRoom();
  const std::string path = db.path();
  db.connection().m_conConnection->Close();
  CQvDbContainer container;
  auto con = container.getQvProjectConnection(path);
  Variant level = con->m_conConnection->Call("BeginTrans");
  EXPECT_EQ(level, Variant(int32_t{1}));
  auto rooms = con->getTable("gebaeude");
  rooms->setValue("Gebaeude", Variant("G7"));
  rooms->insertRecord();
  container.closeQvConnection(con);

  DbConnection check;
  check.Open(DbConnection::MakeConnectionString(path));
  EXPECT_EQ(check.QueryValue("SELECT count(*) FROM gebaeude"), Variant(0));
  // The file is free again: a writer gets its lock at once.
  check.BeginTrans();
  check.Execute("INSERT INTO gebaeude (Gebaeude) VALUES ('G8')");
  check.CommitTrans();
}

}  // namespace
}  // namespace qv
