#include "datasource/db_catalog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "com/error.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "testing/expect_error.h"
#include "testing/temp_dir.h"

namespace qv::ds {
namespace {

using qv::testing::RaisesError;
using Rows = std::vector<std::vector<Variant>>;

class DbCatalogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = dir_.File("project.qv3");
    DbConnection::CreateDatabase(path_);
    Reopen();
  }
  void Reopen() {
    con_.Close();
    con_.Open(DbConnection::MakeConnectionString(path_));
  }
  // A room hierarchy: gebaeude <- stock <- raum, keyed by their leading keys.
  void CreateHierarchy() {
    catalog_.CreateTable("gebaeude", {{"Gebaeude", kAdVarWChar, 20}},
                         {"Gebaeude"});
    catalog_.CreateTable(
        "stock", {{"Gebaeude", kAdVarWChar, 20}, {"Stock", kAdVarWChar, 20}},
        {"Gebaeude", "Stock"});
    catalog_.CreateTable("raum",
                         {{"Gebaeude", kAdVarWChar, 20},
                          {"Stock", kAdVarWChar, 20},
                          {"Raum", kAdVarWChar, 20},
                          {"Flaeche", kAdDouble}},
                         {"Gebaeude", "Stock", "Raum"});
    con_.Execute("INSERT INTO gebaeude VALUES ('G1'), ('G2')");
    con_.Execute(
        "INSERT INTO stock VALUES ('G1', 'EG'), ('G1', 'OG'), ('G2', 'EG')");
    con_.Execute(
        "INSERT INTO raum VALUES ('G1', 'EG', 'R1', 10.5), "
        "('G1', 'OG', 'R2', 20), ('G2', 'EG', 'R3', 30)");
  }
  static ForeignKeyDef Relation(std::string name, std::string parent,
                                std::vector<std::string> columns) {
    ForeignKeyDef fk{std::move(name), std::move(parent), {}};
    for (auto& c : columns) fk.columns.emplace_back(c, c);
    return fk;
  }
  Rows All(const std::string& table) {
    return con_.Query("SELECT * FROM " + QuoteIdentifier(table) +
                      " ORDER BY rowid");
  }
  Variant SchemaOf(const std::string& table) {
    return con_.QueryValue("SELECT sql FROM sqlite_master WHERE name = ?",
                           {table});
  }

  // The relations of the hierarchy, each named after its child table.
  const ForeignKeyDef stock_key_ = Relation("stock", "gebaeude", {"Gebaeude"});
  const ForeignKeyDef raum_key_ =
      Relation("raum", "stock", {"Gebaeude", "Stock"});
  qv::testing::TempDir dir_;
  std::string path_;
  DbConnection con_;
  DbCatalog catalog_{con_};
};

TEST_F(DbCatalogTest, NamesWithQuotesAndSqlAreData) {
  const std::string table = "a\"b";
  const std::string column = "x'; DROP TABLE y; --";
  catalog_.CreateTable("y", {{"k", kAdInteger}}, {"k"});
  catalog_.CreateTable(table, {{column, kAdVarWChar, 30}, {"c\"d", kAdInteger}},
                       {column});
  con_.Execute("INSERT INTO " + QuoteIdentifier(table) + " VALUES (?, ?)",
               {column, 1});
  EXPECT_EQ(catalog_.Tables(),
            (std::vector<std::string>{table, "qvversions", "y"}));
  EXPECT_TRUE(catalog_.HasTable("A\"B"));
  EXPECT_FALSE(catalog_.HasTable("a"));
  EXPECT_EQ(catalog_.Columns(table),
            (std::vector<ColumnDef>{{column, kAdVarWChar, 30},
                                    {"c\"d", kAdInteger}}));
  EXPECT_EQ(All(table), (Rows{{column, 1}}));

  catalog_.AddColumn(table, {"e'f", kAdLongVarWChar});
  con_.Execute("INSERT INTO y VALUES (1)");
  catalog_.AddForeignKey(table,
                         {"k\"'", "y", {{"c\"d", "k"}}, kAdRiNone, kAdRiNone});
  EXPECT_TRUE(RaisesError(
      [&] {
        catalog_.AddForeignKey(table, {"K\"'", "y", {{"c\"d", "k"}}});
      },
      dberr::kCatalog, "foreign key already exists: 'K\"'' in table 'a\"b'"));
  EXPECT_EQ(catalog_.ForeignKeys(table).at(0).name, "k\"'");
  catalog_.DropForeignKey(table, "k\"'");
  EXPECT_TRUE(catalog_.ForeignKeys(table).empty());
  EXPECT_EQ(All(table), (Rows{{column, 1, kNull}}));
}

TEST_F(DbCatalogTest, EnforcesTextLengthAndSmallIntRangeAndReadsColumnTypes) {
  catalog_.CreateTable(
      "raum", {{"Raum", kAdVarWChar, 5}, {"Anzahl", kAdSmallInt}}, {"Raum"});
  catalog_.AddColumn("raum", {"Name", kAdVarWChar, 2});
  const std::string insert = "INSERT INTO raum (Raum, Anzahl) VALUES (?, ?)";
  con_.Execute(insert,
               {"äöüßé", int16_t{-32768}});  // five characters, not bytes
  con_.Execute(insert, {"b", 32767});
  const std::string range =
      "value out of range for column 'Anzahl' of table 'raum': -32768 to 32767";
  const struct {
    std::string sql;
    std::vector<Variant> params;
    std::string text;
  } kCases[] = {
      {insert,
       {"abcdef", 1},
       "text too long for column 'Raum' of table 'raum': at most 5 characters"},
      {insert, {"c", 32768}, range},
      {"UPDATE raum SET Anzahl = Anzahl - 1 WHERE Raum = 'äöüßé'", {}, range},
      {"UPDATE raum SET Name = 'xyz'",
       {},
       "text too long for column 'Name' of table 'raum': at most 2 characters"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.sql);
    EXPECT_TRUE(RaisesError([&] { con_.Execute(c.sql, c.params); },
                            dberr::kConstraint, c.text,
                            "DbConnection.Execute"));
  }
  EXPECT_EQ(con_.QueryValue("SELECT count(*) FROM raum"), Variant(2));
  const std::vector<ColumnDef> columns = {
      {"Text", kAdVarWChar, 50},   {"Memo", kAdLongVarWChar},
      {"Ja", kAdBoolean},          {"Datum", kAdDate},
      {"Klein", kAdSmallInt},      {"Nr", kAdInteger, 0, true},
      {"Einfach", kAdSingle},      {"Doppelt", kAdDouble},
      {"Daten", kAdLongVarBinary}, {"Zahl", kAdInteger}};
  catalog_.CreateTable("alle", columns, {"Zahl", "Text", "Nr"});
  Reopen();
  EXPECT_EQ(catalog_.Columns("ALLE"), columns);
  EXPECT_EQ(catalog_.PrimaryKey("alle"),
            (std::vector<std::string>{"Zahl", "Text", "Nr"}));
}

TEST_F(DbCatalogTest, RejectsInvalidDefinitionsAndUnknownTables) {
  const struct {
    std::vector<ColumnDef> columns;
    std::vector<std::string> keys;
    std::string text;
  } kBad[] = {
      {{{"a", 99}}, {}, "unknown column type 99 for column 'a' of table 't'"},
      {{{"a", kAdVarWChar}}, {}, "invalid size 0 for column 'a' of table 't'"},
      {{{"a"}, {"A"}}, {}, "duplicate column 'A' in table 't'"},
      {{{"a"}}, {"b"}, "column not found: 'b' in table 't'"},
      {{}, {}, "table 't' has no columns"},
  };
  for (const auto& c : kBad) {
    SCOPED_TRACE(c.text);
    EXPECT_TRUE(
        RaisesError([&] { catalog_.CreateTable("t", c.columns, c.keys); },
                    dberr::kCatalog, c.text, "DbCatalog.CreateTable"));
  }
  EXPECT_FALSE(catalog_.HasTable("t"));
  EXPECT_TRUE(RaisesError(
      [&] { catalog_.CreateTable("qvVersions", {{"a"}}, {}); }, dberr::kCatalog,
      "table already exists: 'qvVersions'", "DbCatalog.CreateTable"));
  EXPECT_TRUE(RaisesError(
      [&] {
        catalog_.AddColumn("qvversions", {"NAME", kAdInteger});
      },
      dberr::kCatalog, "column already exists: 'NAME' in table 'qvversions'",
      "DbCatalog.AddColumn"));
  EXPECT_TRUE(RaisesError([&] { catalog_.Columns("nope"); }, dberr::kCatalog,
                          "table not found: 'nope'", "DbCatalog.Columns"));
  EXPECT_TRUE(RaisesError([&] { catalog_.PrimaryKey("nope"); }, dberr::kCatalog,
                          "table not found: 'nope'", "DbCatalog.PrimaryKey"));
  EXPECT_TRUE(RaisesError([&] { catalog_.DropTable("nope"); }, dberr::kCatalog,
                          "table not found: 'nope'", "DbCatalog.DropTable"));
}

TEST_F(DbCatalogTest, ForeignKeysSurviveReopenWithNamesAndRules) {
  CreateHierarchy();
  catalog_.AddForeignKey("stock", stock_key_);
  ForeignKeyDef to_stock = raum_key_;
  to_stock.update_rule = kAdRiNone;
  catalog_.AddForeignKey("raum", to_stock);
  ForeignKeyDef to_building{"raum_gebaeude",
                            "gebaeude",
                            {{"Gebaeude", "Gebaeude"}},
                            kAdRiSetNull,
                            kAdRiCascade};
  catalog_.AddForeignKey("raum", to_building);
  Reopen();
  EXPECT_EQ(catalog_.ForeignKeys("RAUM"),
            (std::vector<ForeignKeyDef>{to_stock, to_building}));
  EXPECT_EQ(catalog_.ForeignKeys("stock"),
            (std::vector<ForeignKeyDef>{stock_key_}));
  EXPECT_TRUE(catalog_.ForeignKeys("gebaeude").empty());
  const auto referencing = catalog_.ReferencingKeys("Gebaeude");
  ASSERT_EQ(referencing.size(), 2u);
  EXPECT_EQ(referencing[0].first, "raum");
  EXPECT_EQ(referencing[1].first, "stock");
  catalog_.DropTable("RAUM");
  EXPECT_EQ(catalog_.Tables(),
            (std::vector<std::string>{"gebaeude", "qvversions", "stock"}));
}

TEST_F(DbCatalogTest, AddingAndDroppingKeysKeepsRowsIndexesAndOtherKeys) {
  CreateHierarchy();
  con_.Execute("CREATE INDEX flaeche ON raum (Flaeche)");
  catalog_.AddForeignKey("raum", raum_key_);
  const Rows rooms = All("raum");
  // stock is the parent of raum: rebuilding it must not touch the rooms.
  catalog_.AddForeignKey("stock", stock_key_);
  catalog_.AddForeignKey("raum", Relation("raum_g", "gebaeude", {"Gebaeude"}));
  EXPECT_EQ(All("raum"), rooms);
  EXPECT_EQ(All("stock").size(), 3u);

  catalog_.DropForeignKey("RAUM", "RAUM");
  EXPECT_EQ(catalog_.ForeignKeys("raum"),
            (std::vector<ForeignKeyDef>{
                Relation("raum_g", "gebaeude", {"Gebaeude"})}));
  EXPECT_EQ(All("raum"), rooms);
  EXPECT_EQ(catalog_.PrimaryKey("raum"),
            (std::vector<std::string>{"Gebaeude", "Stock", "Raum"}));
  EXPECT_EQ(con_.QueryValue(
                "SELECT count(*) FROM sqlite_master WHERE name = 'flaeche'"),
            Variant(1));
  EXPECT_EQ(con_.QueryValue("PRAGMA foreign_keys"), Variant(1));
  EXPECT_TRUE(catalog_.HasTable("raum"));
  EXPECT_EQ(catalog_.Tables().size(),
            4u);  // no table of the rebuild left behind
  EXPECT_TRUE(RaisesError([&] { catalog_.DropForeignKey("raum", "raum"); },
                          dberr::kCatalog,
                          "foreign key not found: 'raum' in table 'raum'",
                          "DbCatalog.DropForeignKey"));
}

TEST_F(DbCatalogTest, CascadesDeletesAndUpdatesThroughKeys) {
  CreateHierarchy();
  catalog_.AddForeignKey("stock", stock_key_);
  catalog_.AddForeignKey("raum", raum_key_);
  con_.Execute("UPDATE gebaeude SET Gebaeude = 'H1' WHERE Gebaeude = 'G1'");
  EXPECT_EQ(con_.Query("SELECT Gebaeude, Raum FROM raum ORDER BY Raum"),
            (Rows{{"H1", "R1"}, {"H1", "R2"}, {"G2", "R3"}}));
  con_.Execute("DELETE FROM gebaeude WHERE Gebaeude = 'h1'");
  EXPECT_EQ(con_.Query("SELECT Raum FROM raum"), (Rows{{"R3"}}));
  EXPECT_EQ(con_.Query("SELECT Stock FROM stock"), (Rows{{"EG"}}));
  EXPECT_TRUE(RaisesError(
      [&] { con_.Execute("INSERT INTO raum VALUES ('G9', 'EG', 'R9', 1)"); },
      dberr::kConstraint,
      "a relation between tables does not allow this change (FOREIGN KEY "
      "constraint failed)"));
}

TEST_F(DbCatalogTest, FailedForeignKeyLeavesTheTableAsItWas) {
  CreateHierarchy();
  con_.Execute(
      "INSERT INTO raum VALUES ('G7', 'EG', 'R7', 1), ('G7', 'OG', 'R8', 2)");
  const Variant schema = SchemaOf("raum");
  const Rows rooms = All("raum");
  EXPECT_TRUE(RaisesError(
      [&] { catalog_.AddForeignKey("raum", raum_key_); }, dberr::kConstraint,
      "table 'raum' has 2 record(s) without a matching record in 'stock'",
      "DbCatalog.AddForeignKey"));
  EXPECT_EQ(SchemaOf("raum"), schema);
  EXPECT_EQ(All("raum"), rooms);
  EXPECT_EQ(catalog_.Tables().size(), 4u);
  EXPECT_EQ(con_.QueryValue("PRAGMA foreign_keys"), Variant(1));
  EXPECT_EQ(con_.TransactionDepth(), 0);

  EXPECT_TRUE(RaisesError(
      [&] {
        catalog_.AddForeignKey("raum", Relation("raum", "stock", {"Etage"}));
      },
      dberr::kCatalog, "column not found: 'Etage' in table 'raum'"));
  DbConnection::Transaction open(con_);
  EXPECT_TRUE(RaisesError([&] { catalog_.AddForeignKey("stock", stock_key_); },
                          dberr::kTransaction,
                          "schema rebuild not possible inside a transaction"));
}

TEST_F(DbCatalogTest, ReadsTablesWrittenByOtherTools) {
  con_.Execute("CREATE TABLE y (k INTEGER PRIMARY KEY)");
  con_.Execute("CREATE TABLE z (k TEXT PRIMARY KEY)");
  con_.Execute(
      "CREATE TABLE [h] (a INTEGER REFERENCES y, /* CONSTRAINT \"no\" FOREIGN "
      "KEY (a) */\n"
      " b VARCHAR(10), c TEXT, d REAL, e, -- CONSTRAINT x FOREIGN KEY (c)\n"
      " CONSTRAINT `by name` FOREIGN KEY (b) REFERENCES z(k) ON DELETE SET "
      "NULL)");
  con_.Execute("INSERT INTO y VALUES (1)");
  con_.Execute("INSERT INTO h VALUES (1, NULL, 'x', 1.5, x'00')");
  const ForeignKeyDef by_name{
      "by name", "z", {{"b", "k"}}, kAdRiNone, kAdRiSetNull};
  const ForeignKeyDef inline_key{"", "y", {{"a", "k"}}, kAdRiNone, kAdRiNone};
  EXPECT_EQ(catalog_.ForeignKeys("h"),
            (std::vector<ForeignKeyDef>{by_name, inline_key}));
  catalog_.DropForeignKey("h", "BY NAME");
  EXPECT_EQ(catalog_.ForeignKeys("h"),
            (std::vector<ForeignKeyDef>{inline_key}));
  EXPECT_EQ(con_.QueryValue("SELECT c FROM h"), Variant("x"));
}

TEST_F(DbCatalogTest, CompactShrinksTheFileOrLeavesTheOriginalOnFailure) {
  catalog_.CreateTable("t", {{"k", kAdInteger}, {"v", kAdLongVarWChar}}, {"k"});
  DbConnection::Transaction tx(con_);
  for (int i = 0; i < 400; ++i) {
    con_.Execute("INSERT INTO t VALUES (?, ?)", {i, std::string(1000, 'x')});
  }
  tx.Commit();
  con_.Execute("DELETE FROM t WHERE k >= 200");
  con_.Close();
  const uintmax_t before = std::filesystem::file_size(path_);
  struct Stop {};
  EXPECT_THROW(
      DbCatalog::Compact(path_, [](uint64_t, uint64_t) { throw Stop(); }),
      Stop);
  EXPECT_EQ(std::filesystem::file_size(path_), before);
  EXPECT_FALSE(std::filesystem::exists(path_ + "-journal"));

  const std::string missing = dir_.File("none.qv3");
  EXPECT_TRUE(RaisesError(
      [&] { DbCatalog::Compact(missing); }, dberr::kCompact,
      "compacting '" + missing + "' failed: database file not found",
      "DbCatalog.Compact"));
  const std::string text = dir_.File("notes.txt");
  std::ofstream(text) << std::string(2000, 'n');
  EXPECT_TRUE(
      RaisesError([&] { DbCatalog::Compact(text); }, dberr::kCompact,
                  "compacting '" + text + "' failed: file is not a database"));
  EXPECT_EQ(std::filesystem::file_size(text), 2000u);

  uint64_t last_read = 0, last_total = 0;
  int calls = 0;
  DbCatalog::Compact(path_, [&](uint64_t read, uint64_t total) {
    ++calls;
    EXPECT_LE(read, total);
    last_read = read;
    last_total = total;
  });
  EXPECT_LT(std::filesystem::file_size(path_), before * 2 / 3);
  EXPECT_GE(calls, 2);  // at least once while working, once when done
  EXPECT_EQ(last_total, before);
  EXPECT_EQ(last_read, before);
  Reopen();
  EXPECT_EQ(con_.QueryValue("SELECT count(*) FROM t"), Variant(200));
  EXPECT_EQ(catalog_.PrimaryKey("qvversions"),
            std::vector<std::string>{"Name"});
}

}  // namespace
}  // namespace qv::ds
