#include "data/cqv_db_container.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "com/class_factory.h"
#include "com/text.h"
#include "data/cqv_connection.h"
#include "data/internal/db_password.h"
#include "data/qv_project.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"
#include "testing/room_schema.h"
#include "testing/scoped_env.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::RaisesError;

class CQvDbContainerTest : public ::testing::Test {
 protected:
  std::string NewProject(QvDbCatalogType catalog,
                         const std::string& name = "Haus") {
    return CreateQvProject(dir_.path(), name, {"VM"}, catalog).front();
  }
  int64_t Count(const std::string& file, const std::string& table) {
    ds::DbConnection con;
    con.Open(ds::DbConnection::MakeConnectionString(file));
    return con.QueryValue("SELECT count(*) FROM \"" + table + "\"").ToLong();
  }

  testing::TempDir dir_;
  CQvDbContainer container_;
};

TEST_F(CQvDbContainerTest, PathsDifferingInCaseOrBlanksShareOneConnection) {
  const std::string file = NewProject(QvDbCatalogTypeLocal);
  auto first = container_.getQvProjectConnection(file);
  auto second =
      container_.getQvProjectConnection("  " + text::UCase(file) + " ");
  ASSERT_TRUE(first);
  EXPECT_EQ(first, second);
  EXPECT_EQ(container_.OpenCount(), 1);
  EXPECT_EQ(first->Datasource(), text::LCase(file));

  container_.closeQvConnection(second);
  EXPECT_EQ(container_.OpenCount(), 1);
  EXPECT_EQ(first->m_conConnection->State(), 1);
  container_.closeQvConnection(first);
  EXPECT_EQ(container_.OpenCount(), 0);
  EXPECT_EQ(first->m_conConnection->State(), 0);
}

// Two projects whose names differ only in letter case are two files with a
// connection each; links and other spellings of one file share one.
TEST_F(CQvDbContainerTest, OneConnectionPerFileNotPerSpelling) {
  const std::string upper = NewProject(QvDbCatalogTypeLocal, "P");
  const std::string lower = NewProject(QvDbCatalogTypeLocal, "p");
  ASSERT_NE(upper, lower);
  const std::string link = dir_.File("link.qv3");
  fs::create_symlink(upper, link);
  const std::string dotted =
      dir_.path() + "/P.qv3/../P.qv3/" + fs::path(upper).filename().string();

  auto first = container_.getQvProjectConnection(upper);
  auto second = container_.getQvProjectConnection(lower);
  ASSERT_TRUE(first && second);
  EXPECT_NE(first, second);
  for (const std::string& other : {link, dotted}) {
    auto same = container_.getQvProjectConnection(other);
    EXPECT_EQ(same, first) << other;
    container_.closeQvConnection(same);
  }
  EXPECT_EQ(container_.OpenCount(), 2);

  // A table made through the second lands in the second file only.
  second->addTable("nur_klein", 1, Variant(SafeArray{"Nr", 3}),
                   Variant(SafeArray{"Wert", 3}), false);
  EXPECT_TRUE(second->getTable("nur_klein"));
  EXPECT_FALSE(first->getTable("nur_klein"));
  EXPECT_EQ(Count(lower, "nur_klein_t"), 0);

  container_.closeQvConnection(second);
  EXPECT_EQ(container_.OpenCount(), 1);
  EXPECT_EQ(first->m_conConnection->State(), 1);
  container_.closeQvConnection(first);
  EXPECT_EQ(container_.OpenCount(), 0);
}

TEST_F(CQvDbContainerTest, ClosingUnknownConnectionsFails) {
  const std::string file = NewProject(QvDbCatalogTypeLocal);
  CQvDbContainer other;
  auto foreign = other.getQvProjectConnection(file);
  EXPECT_TRUE(RaisesError(
      [&] { container_.closeQvConnection(foreign); }, 3,
      "CQvDBContainer: unknown CQvConnection. Path :" + text::LCase(file),
      "CQvDBContainer.closeQvConnection"));
  auto empty = std::make_shared<CQvConnection>();
  empty->m_conConnection = std::make_shared<ds::DbConnection>();
  EXPECT_TRUE(RaisesError([&] { container_.closeQvConnection(empty); }, 5,
                          "CQvDBContainer: no data source in CQvConnection "
                          "found",
                          "CQvDBContainer.closeQvConnection"));
  other.closeQvConnection(foreign);
}

TEST_F(CQvDbContainerTest, OpenConnectionChecksStateAndFile) {
  const std::string file = NewProject(QvDbCatalogTypeLocal);
  std::shared_ptr<ds::DbConnection> con;
  EXPECT_TRUE(container_.openConnection(con, file));
  EXPECT_NE(con->ConnectionString().find(QvPasswordSetting()),
            std::string::npos);
  EXPECT_TRUE(RaisesError(
      [&] { container_.openConnection(con, file); }, 4,
      "CQvDBContainer: connection already opened (Path: " + file + ")",
      "CQvDBContainer.openConnection"));
  container_.closeConnection(con);
  EXPECT_EQ(con->State(), 0);

  std::shared_ptr<ds::DbConnection> missing;
  try {
    container_.openConnection(missing, dir_.File("none.qv3"));
    FAIL() << "opened a missing file";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), QvDbErrorUnknownFile);
    EXPECT_EQ(e.description().rfind("CQvDBContainer: unknown File (Path: " +
                                        dir_.File("none.qv3") + ")\r\n",
                                    0),
              0u)
        << e.description();
  }
}

TEST_F(CQvDbContainerTest, CatalogTypeFromTheDescriptionAndLocalPath) {
  const std::string local = NewProject(QvDbCatalogTypeLocal, "Haus");
  EXPECT_EQ(container_.getQvProjectCatalogType(local), QvDbCatalogTypeLocal);
  EXPECT_EQ(container_.OpenCount(), 0);  // the lookup gives its use back
  EXPECT_EQ(container_.getCatalogPath(local, "VM", "ignored"),
            dir_.path() + "/Haus.qv3/Katalog/Katalog_VM.qv3");

  const std::string global = NewProject(QvDbCatalogTypeGlobal, "Hof");
  EXPECT_EQ(container_.getQvProjectCatalogType(global), QvDbCatalogTypeGlobal);

  // Reached by name, with the connection passed back as an object.
  ObjectPtr by_name = CreateObject("qvglobal10.CQvDbContainer");
  Variant connection =
      by_name->Call("getQvProjectConnection", {Variant(local)});
  EXPECT_EQ(by_name->Call("getQvProjectCatalogType", {Variant(local)}),
            Variant(int32_t{1}));
  by_name->Call("closeQvConnection", {connection});

  // No description means global; an odd type fails.
  ds::DbConnection con;
  con.Open(ds::DbConnection::MakeConnectionString(local));
  con.Execute("UPDATE \"beschreibung_t\" SET \"Katalogtyp\" = NULL");
  EXPECT_EQ(container_.getQvProjectCatalogType(local), QvDbCatalogTypeGlobal);
  con.Execute("UPDATE \"beschreibung_t\" SET \"Katalogtyp\" = 5");
  EXPECT_TRUE(RaisesError([&] { container_.getCatalogPath(local, "VM", ""); },
                          6, "CQvDBContainer: unknown catalog type"));
  con.Execute("DELETE FROM \"beschreibung_t\"");
  con.Execute("DELETE FROM \"beschreibung\"");
  EXPECT_EQ(container_.getQvProjectCatalogType(local), QvDbCatalogTypeGlobal);
}

TEST_F(CQvDbContainerTest, GlobalCatalogComesFromThePathService) {
  const std::string file = NewProject(QvDbCatalogTypeGlobal);
  const std::string asc = dir_.File("enviroment.asc");
  const testing::ScopedEnv env("QV_ENVIROMENT_ASC", asc);
  // A new container each time: each reads the path service afresh.
  const auto catalog = [&](const char* modul, const char* maker) {
    return CQvDbContainer().getCatalogPath(file, modul, maker);
  };
  EXPECT_TRUE(RaisesError([&] { catalog("VM", ""); }, 0,
                          "CQvDBContainer: 'enviroment.asc' not valid"));
  std::ofstream(asc) << "CatalogPath = " << dir_.File("kat") << "\n";
  EXPECT_TRUE(RaisesError([&] { catalog("VM", ""); }, 1,
                          "CQvDBContainer: path in 'enviroment.asc' not "
                          "valid"));
  fs::create_directories(dir_.File("kat"));
  EXPECT_EQ(catalog("EZ", "Hersteller"),
            dir_.File("kat") + "/Hersteller/Katalog_EZ.qv3");
}

TEST_F(CQvDbContainerTest, ClearAllTablesKeepsVersions) {
  const std::string file = NewProject(QvDbCatalogTypeLocal);
  auto con = container_.getQvProjectConnection(file);
  AddRoomTables(*con);
  testing::FillHierarchy(*con->m_conConnection, testing::RoomLevels(),
                         {2, 2, 1, 2});
  container_.closeQvConnection(con);
  const int64_t versions = Count(file, "qvversions");
  ASSERT_EQ(Count(file, "raum_t"), 8);

  container_.ClearAllTables(file);
  for (const char* table : {"gebaeude", "gebaeude_t", "stock_t", "raum",
                            "raum_t", "beschreibung_t"}) {
    EXPECT_EQ(Count(file, table), 0) << table;
  }
  EXPECT_EQ(Count(file, "qvversions"), versions);
}

TEST_F(CQvDbContainerTest, CompactionRefusesOpenFilesAndRemovesTemporaryFile) {
  const std::string file = NewProject(QvDbCatalogTypeLocal);
  auto con = container_.getQvProjectConnection(file);
  const std::string in_use =
      "CQvDBContainer: database in use, close its connections before "
      "compacting (Path: " +
      text::LCase(file) + ")";
  EXPECT_TRUE(RaisesError([&] { container_.compactQvProjectConnection(file); },
                          QvDbErrorConnectionInUse, in_use,
                          "CQvDBContainer.compactQvProjectConnection"));
  container_.closeQvConnection(con);
  {
    // Connections of another container in this process count too.
    CQvDbContainer other;
    auto held = other.getQvProjectConnection(file);
    EXPECT_TRUE(
        RaisesError([&] { container_.compactQvProjectConnection(" " + file); },
                    QvDbErrorConnectionInUse, in_use));
    other.closeQvConnection(held);
  }

  std::ofstream(file + ".qvTmp") << "stale";
  uint64_t last = 0, total = 0;
  container_.compactQvProjectConnection(
      file,
      [&](uint64_t written, uint64_t all) { last = written, total = all; });
  EXPECT_FALSE(fs::exists(file + ".qvTmp"));
  EXPECT_GT(total, 0u);
  EXPECT_GT(last, 0u);
}

}  // namespace
}  // namespace qv
