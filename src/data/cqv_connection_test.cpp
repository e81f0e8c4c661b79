// CQvConnection: user count, the table cache and its names, parents through
// foreign keys, the data source path, version rows, saved positions, the
// clipboard, termination and the dispatch interface.
#include "data/cqv_connection.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

#include "com/class_factory.h"
#include "com/safe_array.h"
#include "datasource/c_record_binding.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "records/cqv_clipboard.h"
#include "testing/expect_error.h"
#include "testing/project_database.h"

namespace qv {
namespace {

using ds::QvRecordset;
using testing::RaisesError;

class CQvConnectionTest : public ::testing::Test {
 protected:
  CQvConnection& con() { return db_.connection(); }

  // The stored version under a row name, as the version table holds it.
  Variant VersionRow(const std::string& row) {
    return db_.db().QueryValue(
        "SELECT \"Version\" FROM \"qvversions\" WHERE \"Name\" = ?", {row});
  }

  void AddRoom(const std::string& gebaeude, const std::string& raum,
               double flaeche) {
    std::shared_ptr<QvRecordset> rs = con().getTable("raum");
    rs->clearVars();
    rs->setValue("Gebaeude", gebaeude);
    rs->setValue("Raum", raum);
    rs->setValue("Flaeche", flaeche);
    rs->insertRecord();
  }

  testing::ProjectDatabase db_;
};

TEST_F(CQvConnectionTest, CountsItsUsers) {
  EXPECT_TRUE(RaisesError([&] { con().release(); }, 0,
                          "instance already released",
                          "CQvConnection.release"));
  con().addRef();
  con().addRef();
  EXPECT_FALSE(con().release());
  EXPECT_TRUE(con().release());
  EXPECT_TRUE(RaisesError([&] { con().release(); }, 0,
                          "instance already released",
                          "CQvConnection.release"));
  // The count is sixteen bit.
  for (int i = 0; i < 32767; ++i) con().addRef();
  EXPECT_TRUE(RaisesError([&] { con().addRef(); }, 6, "Overflow"));
  EXPECT_FALSE(con().release());
}

TEST_F(CQvConnectionTest, CachesTablesUnderTheirTrimmedLowerCaseName) {
  db_.AddBuildingAndRoom();
  AddRoom("G1", "R1", 10);
  AddRoom("G1", "R2", 20);
  std::shared_ptr<QvRecordset> first = con().getTable(" Raum ");
  ASSERT_NE(first, nullptr);
  first->moveLast();
  // The cached object comes back as it is: not opened again.
  std::shared_ptr<QvRecordset> second = con().getTable("raum");
  EXPECT_EQ(second, first);
  EXPECT_EQ(second->getPosition(), 1);
  EXPECT_EQ(con().getTable("RAUM"), first);
  // A table that cannot be opened is no object and is not cached.
  EXPECT_EQ(con().getTable("fehlt"), nullptr);
  EXPECT_EQ(con().getTable("fehlt", true), nullptr);
  con().addTable("fehlt", 1, Variant(SafeArray{"Nr", 3}),
                 Variant(SafeArray{"Text", 203}), false);
  EXPECT_NE(con().getTable("Fehlt"), nullptr);
}

TEST_F(CQvConnectionTest, WithParentLinksToTheOpenedParents) {
  db_.AddBuildingAndRoom();
  con().setChild("Gebaeude", "Raum");
  std::shared_ptr<QvRecordset> gebaeude = con().getTable("gebaeude");
  std::shared_ptr<QvRecordset> raum = con().getTable(" Raum ", true);
  ASSERT_NE(raum, nullptr);
  EXPECT_EQ(raum->getParent(), gebaeude);
  // Without the flag no parent is looked up.
  con().addTable("wand", 1, Variant(SafeArray{"Gebaeude", 202, 20, "Nr", 3}),
                 Variant(SafeArray{"Text", 203}), false);
  con().setChild("gebaeude", "wand");
  EXPECT_EQ(con().getTable("wand")->getParent(), nullptr);
}

TEST_F(CQvConnectionTest, AParentMustBeOpenedFirst) {
  db_.AddBuildingAndRoom();
  con().setChild("Gebaeude", "Raum");
  EXPECT_TRUE(
      RaisesError([&] { con().getTable("Raum", true); }, 1,
                  "parent table: 'gebaeude' for table: 'raum' not found",
                  "CQvConnection.getTable"));
  // The table was cached before its parents were looked up.
  std::shared_ptr<QvRecordset> raum = con().getTable("raum", true);
  ASSERT_NE(raum, nullptr);
  EXPECT_EQ(raum->getParent(), nullptr);
}

struct RaumRecord {
  char gebaeude[21];
  char raum[21];
  double flaeche;
};

TEST_F(CQvConnectionTest, CTableIsFoundByTheCallersRecordStructure) {
  db_.AddBuildingAndRoom();
  AddRoom("G1", "R1", 12.5);
  RaumRecord record{};
  const QvCFieldLayout fields[] = {
      {"Gebaeude", 202, offsetof(RaumRecord, gebaeude), 21},
      {"Raum", 202, offsetof(RaumRecord, raum), 21},
      {"Flaeche", 5, offsetof(RaumRecord, flaeche), sizeof(double)}};
  ASSERT_EQ(qv_register_c_record(&record, " Raum ", fields, 3), 0);
  Variant pointer(qv_c_record_pointer(&record));
  std::shared_ptr<QvRecordset> raum = con().getCTable(pointer);
  ASSERT_NE(raum, nullptr);
  EXPECT_EQ(raum, con().getTable("raum"));
  raum->moveFirst();
  EXPECT_STREQ(record.raum, "R1");
  EXPECT_EQ(record.flaeche, 12.5);

  // A structure with a field the table lacks cannot be bound.
  RaumRecord other{};
  const QvCFieldLayout wrong[] = {
      {"Hoehe", 5, offsetof(RaumRecord, flaeche), sizeof(double)}};
  ASSERT_EQ(qv_register_c_record(&other, "raum", wrong, 1), 0);
  Variant other_pointer(qv_c_record_pointer(&other));
  EXPECT_EQ(con().getCTable(other_pointer), nullptr);
  EXPECT_EQ(qv_unregister_c_record(&other), 0);
  EXPECT_EQ(qv_unregister_c_record(&record), 0);
  // An unknown structure names no table.
  EXPECT_EQ(con().getCTable(pointer), nullptr);
}

TEST_F(CQvConnectionTest, DatasourceIsTheLowerCasePathOfTheConnectionString) {
  EXPECT_EQ(con().Datasource(), qv::text::LCase(db_.path()));
  auto closed = std::make_shared<CQvConnection>();
  EXPECT_EQ(closed->Datasource(), "");
  closed->m_conConnection->SetConnectionString(
      "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=C:\\Projekte\\Haus.QV3;"
      "Jet OLEDB:Database Password=x");
  EXPECT_EQ(closed->Datasource(), "c:\\projekte\\haus.qv3");
  closed->m_conConnection->SetConnectionString(
      "Provider=SQLite; Data Source=/P/A.qv3;Data Source=/P/B.qv3");
  EXPECT_EQ(closed->Datasource(), "/p/a.qv3");
  // The key is searched with its letter case.
  closed->m_conConnection->SetConnectionString("data source=/p/a.qv3");
  EXPECT_EQ(closed->Datasource(), "");
}

TEST_F(CQvConnectionTest, VersionRowsOfTheConnectionAndOfEachTable) {
  EXPECT_EQ(con().getConnectionVersion(), 0);
  con().setConnectionVersion(5);
  EXPECT_EQ(con().getConnectionVersion(), 5);
  EXPECT_EQ(VersionRow("qvversions_t"), Variant(5));
  EXPECT_EQ(con().getConnectionAge(5), QvTableAgeCorrect);
  EXPECT_EQ(con().getConnectionAge(6), QvTableAgeOlder);
  EXPECT_EQ(con().getConnectionAge(4), QvTableAgeNewer);
  EXPECT_EQ(con().getDatabaseSize(), 0);
  con().setDatabaseSize(123456);
  EXPECT_EQ(con().getDatabaseSize(), 123456);
  EXPECT_EQ(VersionRow("qvdatabasesize_t"), Variant(123456));
  con().setDatabaseSize(7);
  EXPECT_EQ(con().getDatabaseSize(), 7);
  EXPECT_EQ(con().getConnectionVersion(), 5);
  // A table without version row becomes version 100.
  EXPECT_EQ(con().getTableAge(" Raum ", 120), QvTableAgeOlder);
  EXPECT_EQ(VersionRow("raum_t"), Variant(100));
  EXPECT_EQ(con().getTableAge("raum", 100), QvTableAgeCorrect);
  EXPECT_EQ(con().getTableAge("raum", 99), QvTableAgeNewer);
  // A stored version below the expected one is left as it is.
  SafeArray none;
  con().convertTable("wand", 50, none);
  EXPECT_EQ(con().getTableAge("wand", 60), QvTableAgeOlder);
  EXPECT_EQ(con().getTableVersion("wand"), 50);
}

TEST_F(CQvConnectionTest, VersionsReadZeroWithoutTheVersionTable) {
  con().setConnectionVersion(5);
  ds::DbCatalog(db_.db()).DropTable("qvversions");
  EXPECT_EQ(con().getConnectionVersion(), 0);
  EXPECT_EQ(con().getTableVersion("raum"), 0);
  con().m_conConnection->Close();
  EXPECT_EQ(con().getTableVersion("raum"), 0);
  con().m_conConnection = nullptr;
  EXPECT_EQ(con().getTableVersion("raum"), 0);
}

TEST_F(CQvConnectionTest, SavesAndRestoresThePositionOfEveryTable) {
  db_.AddBuildingAndRoom();
  for (const char* raum : {"R1", "R2", "R3"}) AddRoom("G1", raum, 1);
  std::shared_ptr<QvRecordset> gebaeude = con().getTable("gebaeude");
  for (const char* key : {"G1", "G2"}) {
    gebaeude->clearVars();
    gebaeude->setValue("Gebaeude", key);
    gebaeude->insertRecord();
  }
  std::shared_ptr<QvRecordset> raum = con().getTable("raum");
  raum->readBlock(0, true);
  raum->moveTo(1);
  con().saveIterPos();
  raum->moveFirst();
  EXPECT_TRUE(con().loadIterPos());
  EXPECT_EQ(raum->getValue("Raum"), Variant("R2"));
  // The saved record of one table is gone: the others are still restored.
  raum->moveTo(2);
  gebaeude->readBlock(0, true);
  gebaeude->moveTo(1);
  con().saveIterPos();
  raum->deleteRecord();
  raum->moveFirst();
  gebaeude->moveFirst();
  EXPECT_FALSE(con().loadIterPos());
  EXPECT_EQ(gebaeude->getValue("Gebaeude"), Variant("G2"));
}

// clearClipboards and the end of a connection empty the current clipboard
// when it holds a record set of a table the connection has open, whichever
// connection that record set came from; other tables leave it alone.
TEST_F(CQvConnectionTest, ClipboardIsEmptiedByEveryConnectionOfItsTable) {
  db_.AddBuildingAndRoom();
  auto clipboard = std::make_shared<CQvClipboard>();
  SetCurrentClipboard(clipboard);
  std::shared_ptr<CQvConnection> keeper = db_.OpenAnother();
  clipboard->set_qvrs(keeper->getTable("gebaeude"));
  con().getTable("raum");
  con().clearClipboards();
  EXPECT_NE(clipboard->qvrs(), nullptr);
  con().getTable("Gebaeude");
  con().clearClipboards();
  EXPECT_EQ(clipboard->qvrs(), nullptr);

  clipboard->set_qvrs(keeper->getTable("raum"));
  {
    std::shared_ptr<CQvConnection> other = db_.OpenAnother();
    other->getTable("gebaeude");
  }
  EXPECT_NE(clipboard->qvrs(), nullptr);
  std::shared_ptr<ds::DbConnection> database;
  std::weak_ptr<QvRecordset> cached;
  {
    std::shared_ptr<CQvConnection> other = db_.OpenAnother();
    database = other->m_conConnection;
    cached = other->getTable("Raum");
  }
  EXPECT_EQ(database->State(), ds::DbConnection::kStateClosed);
  EXPECT_TRUE(cached.expired());
  EXPECT_EQ(clipboard->qvrs(), nullptr);
  SetCurrentClipboard(nullptr);
}

TEST_F(CQvConnectionTest, ReachedByName) {
  ObjectPtr object = CreateObject("qvglobal10.CQvConnection");
  EXPECT_TRUE(object->Get("m_conConnection").ToObjectAs<ds::DbConnection>());

  db_.AddBuildingAndRoom();
  object->Set("M_CONCONNECTION", db_.shared_connection()->m_conConnection);
  Variant raum = object->Call("getTable", {" Raum "});
  EXPECT_TRUE(raum.ToObjectAs<QvRecordset>());
  EXPECT_EQ(object->Call("GETTABLE", {"raum", true}), raum);
  EXPECT_EQ(object->Get("Datasource"), Variant(text::LCase(db_.path())));
  object->Call("addRef");
  EXPECT_EQ(object->Call("release"), Variant(true));
  object->Set("m_conConnection", nullptr);
  EXPECT_TRUE(RaisesError([&] { object->Get("Datasource"); }, 91,
                          "Object variable or With block variable not set"));
}

}  // namespace
}  // namespace qv
