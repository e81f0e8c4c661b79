#include "datasource/db_connection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/variant_date.h"
#include "datasource/db_catalog.h"
#include "datasource/db_error.h"
#include "testing/expect_error.h"
#include "testing/temp_dir.h"

namespace qv::ds {
namespace {

using qv::testing::RaisesError;

class DbConnectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = dir_.File("project.qv3");
    DbConnection::CreateDatabase(path_);
    con_.Open(DbConnection::MakeConnectionString(path_));
  }

  qv::testing::TempDir dir_;
  std::string path_;
  DbConnection con_;
};

TEST_F(DbConnectionTest, OpensByTheStringGivenOrTheStringSetBeforeAndCloses) {
  EXPECT_EQ(con_.State(), DbConnection::kStateOpen);
  EXPECT_EQ(con_.Path(), path_);
  con_.Close();
  EXPECT_EQ(con_.State(), DbConnection::kStateClosed);
  con_.Close();  // closing twice does nothing

  const std::string given = "Data Source=" + path_;
  con_.Open(given);
  EXPECT_EQ(con_.State(), DbConnection::kStateOpen);
  EXPECT_EQ(con_.ConnectionString(), given);
  EXPECT_TRUE(RaisesError([&] { con_.Open(given); }, dberr::kConnection,
                          "connection is already open", "DbConnection.Open"));
  EXPECT_TRUE(RaisesError([&] { con_.SetConnectionString("x"); },
                          dberr::kConnection, "connection is already open"));
  // Opened without a string, it uses the one set before.
  con_.Close();
  con_.SetConnectionString(DbConnection::MakeConnectionString(path_));
  con_.Open("");
  EXPECT_EQ(con_.State(), DbConnection::kStateOpen);
}

TEST_F(DbConnectionTest, BadConnectionStringsAndFilesFailWithoutCreating) {
  const std::string missing = dir_.File("none.qv3");
  const std::string text = dir_.File("notes.txt");
  std::ofstream(text)
      << "this is no database, just a text file of some length\n";
  const struct {
    std::string connection;
    std::string text;
  } kCases[] = {
      {"Provider=MSDASQL;Data Source=" + path_,
       "unsupported provider: 'MSDASQL'"},
      {DbConnection::MakeConnectionString(missing),
       "database file not found: '" + missing + "'"},
      {DbConnection::MakeConnectionString(dir_.path()),
       "database file not found: '" + dir_.path() + "'"},
      {DbConnection::MakeConnectionString(text),
       "file is not a database: '" + text + "'"},
  };
  DbConnection con;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.connection);
    EXPECT_TRUE(RaisesError([&] { con.Open(c.connection); }, dberr::kConnection,
                            c.text, "DbConnection.Open"));
    EXPECT_EQ(con.State(), DbConnection::kStateClosed);
  }
  EXPECT_FALSE(
      std::filesystem::exists(missing));  // opening never creates a file
}

TEST_F(DbConnectionTest, OpensAPathWrittenWithOtherLetterCase) {
  std::filesystem::create_directories(dir_.File("Projekt.qv3"));
  const std::string real = dir_.File("Projekt.qv3/Haus_A_WL.qv3");
  DbConnection::CreateDatabase(real);
  DbConnection con;
  con.Open(DbConnection::MakeConnectionString(
      dir_.File("PROJEKT.qv3\\haus_a_wl.QV3")));
  EXPECT_EQ(con.Path(), real);
  EXPECT_TRUE(RaisesError(
      [&] {
        DbConnection::CreateDatabase(dir_.File("projekt.QV3/HAUS_A_WL.qv3"));
      },
      dberr::kConnection,
      "database file already exists: '" +
          dir_.File("projekt.QV3/HAUS_A_WL.qv3") + "'",
      "DbConnection.CreateDatabase"));
}

TEST_F(DbConnectionTest, NewDatabaseHoldsTheVersionTableAndPragmasAreSet) {
  DbCatalog catalog(con_);
  EXPECT_EQ(catalog.Tables(), std::vector<std::string>{"qvversions"});
  EXPECT_EQ(catalog.Columns("qvversions"),
            (std::vector<ColumnDef>{{"Name", kAdVarWChar, 255},
                                    {"Version", kAdInteger}}));
  EXPECT_EQ(catalog.PrimaryKey("qvversions"), std::vector<std::string>{"Name"});
  EXPECT_TRUE(RaisesError(
      [&] { DbConnection::CreateDatabase(dir_.File("no/such.qv3")); },
      dberr::kSql, "unable to open database file",
      "DbConnection.CreateDatabase"));
  EXPECT_EQ(con_.QueryValue("PRAGMA foreign_keys"), Variant(1));
  EXPECT_EQ(con_.QueryValue("PRAGMA journal_mode"), Variant("delete"));
  EXPECT_EQ(con_.QueryValue("PRAGMA busy_timeout"),
            Variant(DbConnection::kBusyTimeoutMs));
}

TEST_F(DbConnectionTest, WaitsForAnotherWriterInsteadOfFailing) {
  DbConnection other;
  other.Open(DbConnection::MakeConnectionString(path_));
  auto holder = std::make_unique<DbConnection::Transaction>(other);
  other.Execute("INSERT INTO qvversions VALUES ('held', 1)");
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    holder->Commit();
  });
  con_.Execute(
      "INSERT INTO qvversions VALUES ('waited', 2)");  // blocks until then
  release.join();
  EXPECT_EQ(con_.QueryValue("SELECT count(*) FROM qvversions"), Variant(2));
}

TEST_F(DbConnectionTest, BindsAndReadsValuesByDeclaredTypeAndNamesFailures) {
  DbCatalog(con_).CreateTable("v",
                              {{"id", kAdInteger},
                               {"b", kAdBoolean},
                               {"n", kAdSmallInt},
                               {"s", kAdSingle},
                               {"d", kAdDouble},
                               {"t", kAdDate},
                               {"txt", kAdVarWChar, 20},
                               {"memo", kAdLongVarWChar}},
                              {"id"});
  const Date when = MakeDate(2024, 3, 1, 12, 30, 5);
  con_.Execute(
      "INSERT INTO v VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
      {1, true, int16_t{-7}, 1.5f, 2.25, when, "it's \"x\"", Variant()});
  con_.Execute("INSERT INTO v (id, b, t) VALUES (?, ?, ?)",
               {2, false, MakeDate(2024, 3, 2)});
  EXPECT_EQ(con_.Changes(), 1);
  const auto rows = con_.Query("SELECT * FROM v ORDER BY id");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0], (std::vector<Variant>{1, true, int16_t{-7}, 1.5f, 2.25,
                                           when, "it's \"x\"", kNull}));
  EXPECT_EQ(rows[1][1], Variant(false));
  EXPECT_EQ(rows[1][2], Variant(kNull));
  // What is stored: Booleans as -1 / 0, dates as ISO text.
  EXPECT_EQ(con_.Query("SELECT b + 0, t || '' FROM v ORDER BY id"),
            (std::vector<std::vector<Variant>>{{-1, "2024-03-01 12:30:05"},
                                               {0, "2024-03-02 00:00:00"}}));
  EXPECT_EQ(con_.QueryValue("SELECT 5000000000"), Variant(5e9));
  EXPECT_EQ(con_.QueryValue("SELECT id FROM v WHERE id = 99"), Variant());
  EXPECT_TRUE(
      RaisesError([&] { con_.Execute("SELECT ?", {Variant(SafeArray())}); },
                  err::kTypeMismatch, "Type mismatch"));
  EXPECT_TRUE(RaisesError([&] { con_.Query("SELECT * FROM nowhere"); },
                          dberr::kSql, "no such table: nowhere",
                          "DbConnection.Query"));
  DbConnection closed;
  EXPECT_TRUE(RaisesError([&] { closed.Execute("SELECT 1"); }, dberr::kNotOpen,
                          "connection is closed"));
}

int Count(DbConnection& con) {
  return con.QueryValue("SELECT count(*) FROM qvversions").ToLong();
}

TEST_F(DbConnectionTest, TransactionsNestEndInOrderAndRollBackUnlessCommitted) {
  {
    DbConnection::Transaction outer(con_);
    con_.Execute("INSERT INTO qvversions VALUES ('a', 1)");
    {
      DbConnection::Transaction inner(con_);
      con_.Execute("INSERT INTO qvversions VALUES ('b', 1)");
      EXPECT_EQ(con_.TransactionDepth(), 2);
    }  // not committed: only 'b' goes
    EXPECT_EQ(Count(con_), 1);
    {
      DbConnection::Transaction inner(con_);
      con_.Execute("INSERT INTO qvversions VALUES ('c', 1)");
      inner.Commit();
    }
    outer.Commit();
  }
  EXPECT_EQ(con_.TransactionDepth(), 0);
  EXPECT_EQ(Count(con_), 2);
  {
    DbConnection::Transaction outer(con_);
    DbConnection::Transaction inner(con_);
    con_.Execute("DELETE FROM qvversions");
    inner.Commit();
  }  // the outer one takes the inner one's work back with it
  EXPECT_EQ(Count(con_), 2);
  DbConnection::Transaction outer(con_);
  DbConnection::Transaction inner(con_);
  EXPECT_TRUE(RaisesError([&] { outer.Commit(); }, dberr::kTransaction,
                          "inner transaction still open",
                          "DbConnection.Transaction"));
  inner.Commit();
  EXPECT_TRUE(RaisesError([&] { inner.Commit(); }, dberr::kTransaction,
                          "transaction already finished"));
  outer.Commit();
}

TEST_F(DbConnectionTest, ReachableByMemberName) {
  auto con = std::make_shared<DbConnection>();
  con->Let("ConnectionString",
           Variant(DbConnection::MakeConnectionString(path_)));
  con->Call("Open");
  EXPECT_EQ(con->Get("State"), Variant(DbConnection::kStateOpen));
  con->Call("Execute", {"INSERT INTO qvversions VALUES (?, ?)",
                        Variant(MakeStringArray({"x_t", "7"}))});
  EXPECT_EQ(con->QueryValue("SELECT Version FROM qvversions"), Variant(7));
  con->Call("Close");
  EXPECT_EQ(con->Get("State"), Variant(DbConnection::kStateClosed));
  EXPECT_EQ(con->Get("ConnectionString"),
            Variant(DbConnection::MakeConnectionString(path_)));
}

TEST(QuoteIdentifierTest, DoublesQuotes) {
  EXPECT_EQ(QuoteIdentifier("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(QuoteIdentifier(""), "\"\"");
}

}  // namespace
}  // namespace qv::ds
