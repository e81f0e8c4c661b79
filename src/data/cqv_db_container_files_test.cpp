// CQvDbContainer at the edges of the file system: files that are not
// project databases, paths the system cannot take, files locked by another
// process, and connections used after they were given back.
#include <SQLiteCpp/Database.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "com/text.h"
#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "data/qv_project.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"
#include "testing/scoped_env.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::RaisesError;

constexpr const char* kOpenSource = "CQvDBContainer.openConnection";

std::string UnknownFile(const std::string& path, const std::string& reason) {
  return "CQvDBContainer: unknown File (Path: " + path + ")\r\n" + reason;
}

class ContainerFilesTest : public ::testing::Test {
 protected:
  std::string NewProject() {
    return CreateQvProject(dir_.path(), "Haus", {"VM"}, QvDbCatalogTypeLocal)
        .front();
  }

  // Every way in through the container: open, clear, compact.
  void ExpectAllRefuse(const std::string& path, const std::string& text) {
    EXPECT_TRUE(RaisesError([&] { container_.getQvProjectConnection(path); },
                            QvDbErrorUnknownFile, text, kOpenSource));
    EXPECT_TRUE(RaisesError([&] { container_.ClearAllTables(path); },
                            QvDbErrorUnknownFile, text, kOpenSource));
    EXPECT_TRUE(
        RaisesError([&] { container_.compactQvProjectConnection(path); },
                    QvDbErrorUnknownFile, text, kOpenSource));
    EXPECT_EQ(container_.OpenCount(), 0);
  }

  testing::TempDir dir_;
  CQvDbContainer container_;
};

TEST_F(ContainerFilesTest, FilesThatAreNoProjectDatabaseAreLeftAlone) {
  const std::string empty = dir_.File("empty.qv3");
  std::ofstream(empty).close();
  const std::string text_file = dir_.File("notes.qv3");
  std::ofstream(text_file) << "Raum 1: 20 m2\n";
  const std::string foreign = dir_.File("foreign.qv3");
  {
    SQLite::Database db(foreign, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    db.exec("CREATE TABLE t (a)");
  }
  const auto foreign_size = fs::file_size(foreign);
  struct Case {
    std::string path, reason;
  };
  const std::vector<Case> cases = {
      {empty,
       "not a project database (no table 'qvversions'): '" + empty + "'"},
      {foreign,
       "not a project database (no table 'qvversions'): '" + foreign + "'"},
      {text_file, "file is not a database: '" + text_file + "'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    ExpectAllRefuse(c.path, UnknownFile(c.path, c.reason));
  }
  EXPECT_EQ(fs::file_size(empty), 0u);
  EXPECT_EQ(fs::file_size(foreign), foreign_size);
  EXPECT_FALSE(fs::exists(foreign + ".qvTmp"));
}

TEST_F(ContainerFilesTest, PathsTheSystemCannotTakeSaySo) {
  const std::string file = NewProject();
  // Cut at the NUL, this path would name the existing project file.
  const std::string with_nul = file + std::string(1, '\0') + "x";
  ExpectAllRefuse(
      with_nul, UnknownFile(with_nul, "invalid path (NUL character): '" + file +
                                          "\\0x'"));
  const std::string long_name = dir_.File(std::string(300, 'a') + ".qv3");
  std::string long_path = dir_.path();
  while (long_path.size() < 5000) long_path += "/" + std::string(200, 'b');
  for (const std::string& path : {long_name, long_path}) {
    ExpectAllRefuse(path, UnknownFile(path, "path too long: '" + path + "'"));
  }
  EXPECT_TRUE(RaisesError([&] { ds::DbConnection::CreateDatabase(with_nul); },
                          ds::dberr::kConnection,
                          "invalid path (NUL character): '" + file + "\\0x'",
                          "DbConnection.CreateDatabase"));
}

// A lock held past the timeout is reported as such; a writer in the
// middle of its work does not keep a reader out.
TEST_F(ContainerFilesTest, LockedPastTheTimeoutFailsButAWriterLetsReadersIn) {
  const std::string file = NewProject();
  const testing::ScopedEnv timeout("QVGLOBAL_BUSY_TIMEOUT_MS", "50");
  EXPECT_EQ(ds::DbConnection::BusyTimeoutMs(), 50);
  SQLite::Database other(file, SQLite::OPEN_READWRITE);
  other.exec("BEGIN EXCLUSIVE");
  EXPECT_TRUE(RaisesError(
      [&] { container_.getQvProjectConnection(file); }, ds::dberr::kBusy,
      "database is locked: '" + file + "'", "DbConnection.Open"));
  other.exec("ROLLBACK");

  other.exec("BEGIN IMMEDIATE");
  other.exec("INSERT INTO beschreibung (Nr) VALUES (2)");
  auto con = container_.getQvProjectConnection(file);
  ASSERT_TRUE(con);
  auto rs = con->getTable("Beschreibung");
  ASSERT_TRUE(rs);
  rs->readBlock(0, true);
  EXPECT_EQ(rs->getRecordCount(), 1);  // the writer has not committed
  other.exec("COMMIT");
  container_.closeQvConnection(con);
}

TEST_F(ContainerFilesTest, AConnectionGivenBackHandsOutNoTables) {
  const std::string file = NewProject();
  auto con = container_.getQvProjectConnection(file);
  ASSERT_TRUE(con->getTable("beschreibung"));
  container_.closeQvConnection(con);
  for (const char* table : {"beschreibung", " Raum "}) {
    SCOPED_TRACE(table);
    EXPECT_TRUE(RaisesError(
        [&] { con->getTable(table); }, 0,
        "instance already released: table '" + text::LCase(text::Trim(table)) +
            "' not available (Path: " + text::LCase(file) + ")",
        "CQvConnection.getTable"));
  }
}

}  // namespace
}  // namespace qv
