// Runs the built qv tool's `project` and `db` commands as a user would and
// checks files, output and exit status.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "datasource/db_connection.h"
#include "testing/run_tool.h"
#include "testing/temp_dir.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

namespace fs = std::filesystem;
using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

class QvDbToolTest : public ::testing::Test {
 protected:
  std::string NewProject() {
    const ToolRun run = RunQv("project new '" + dir_.path() +
                              "' Haus --modules VM,ez --catalog global");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, dir_.path() + "/Haus.qv3/Haus_VM.qv3\n" + dir_.path() +
                           "/Haus.qv3/Haus_EZ.qv3\n");
    return dir_.path() + "/Haus.qv3/Haus_VM.qv3";
  }
  testing::TempDir dir_;
};

TEST_F(QvDbToolTest, ProjectNewCreatesModuleDatabases) {
  const std::string file = NewProject();
  EXPECT_TRUE(fs::exists(dir_.path() + "/Haus.qv3/Haus_EZ.qv3"));
  const ToolRun info = RunQv("db info '" + file + "'");
  EXPECT_EQ(info.status, 0) << info.err;
  EXPECT_EQ(info.out, "Database " + file +
                          "\nConnection version 0, database size 0\n"
                          "Logical tables:\n"
                          "  beschreibung     version 1    keys Nr\n"
                          "Other tables: qvversions\n"
                          "Relations:\n  none\n");
}

TEST_F(QvDbToolTest, CheckClearAndCompact) {
  const std::string file = NewProject();
  EXPECT_EQ(RunQv("db check '" + file + "'"), (ToolRun{0, "ok\n", ""}));
  // No progress bar when the output is no terminal.
  EXPECT_EQ(RunQv("db compact '" + file + "'"), (ToolRun{0, "", ""}));
  EXPECT_EQ(RunQv("db clear '" + file + "'"), (ToolRun{0, "", ""}));
  ds::DbConnection con;
  con.Open(ds::DbConnection::MakeConnectionString(file));
  EXPECT_EQ(con.QueryValue("SELECT count(*) FROM beschreibung_t").ToLong(), 0);

  // Relations to missing tables are faults, and the rows of the other
  // tables are still checked: a row whose parent is missing is a fault.
  con.Execute(
      "CREATE TABLE c (k INTEGER, CONSTRAINT \"zu_p\" FOREIGN KEY "
      "(k) REFERENCES weg (k))");
  con.Execute("CREATE TABLE d (k INTEGER REFERENCES fort)");
  con.Execute("CREATE TABLE p (k INTEGER PRIMARY KEY)");
  con.Execute("CREATE TABLE q (k INTEGER REFERENCES p(k))");
  con.Execute("PRAGMA foreign_keys = OFF");
  con.Execute("INSERT INTO q VALUES (7)");
  con.Close();
  EXPECT_EQ(
      RunQv("db check '" + file + "'"),
      (ToolRun{
          1,
          "table 'c' refers to the missing table 'weg' (foreign key 'zu_p')\n"
          "table 'd' refers to the missing table 'fort'\n"
          "row 1 of table 'q' has no parent in 'p'\n",
          "3 fault(s) found in " + file + "\n"}));
}

TEST_F(QvDbToolTest, ProjectsThatCannotBeMadeWriteNothing) {
  struct Case {
    std::string name, modules, err;
  };
  const std::vector<Case> cases = {
      {"", "VM", "Der Projektname ist leer."},
      {"  ", "VM", "Der Projektname ist leer."},
      {"a/b", "VM", "Ungültiger Projektname: 'a/b'"},
      {"..", "VM", "Ungültiger Projektname: '..'"},
      {"Haus", "VM,XY",
       "CQvModulDefs->GetProjectModul: Finde zu 'XY' kein Struktur"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(RunQv("project new '" + dir_.path() + "' '" + c.name +
                    "' --modules " + c.modules),
              (ToolRun{1, "", c.err + "\n"}));
  }
  EXPECT_TRUE(fs::is_empty(dir_.path()));
}

TEST_F(QvDbToolTest, FilesThatAreNoProjectDatabaseAreRefused) {
  const std::string file = dir_.path() + "/leer.qv3";
  std::ofstream(file).close();
  const std::string err = "CQvDBContainer: unknown File (Path: " + file +
                          ")\r\nnot a project database (no table "
                          "'qvversions'): '" +
                          file + "'\n";
  for (const char* command : {"check", "compact", "clear", "info"}) {
    SCOPED_TRACE(command);
    EXPECT_EQ(RunQv(std::string("db ") + command + " '" + file + "'"),
              (ToolRun{1, "", err}));
  }
}

TEST_F(QvDbToolTest, NamesFromTheFileArePrintedWithControlsEscaped) {
  const std::string file = NewProject();
  {
    ds::DbConnection con;
    con.Open(ds::DbConnection::MakeConnectionString(file));
    con.Execute("CREATE TABLE \"x\x1b]0;owned\x07\" (k)");
  }
  const ToolRun run = RunQv("db info '" + file + "'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("Other tables: qvversions, x\\x1b]0;owned\\x07\n"),
            std::string::npos)
      << run.out;
  EXPECT_EQ(run.out.find('\x1b'), std::string::npos);
}

}  // namespace
}  // namespace qv

#endif  // QVGLOBAL_QV_TOOL
