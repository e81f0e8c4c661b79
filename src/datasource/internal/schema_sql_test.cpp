#include "datasource/internal/schema_sql.h"

#include <gtest/gtest.h>

#include <string>

#include "datasource/db_error.h"
#include "testing/expect_error.h"

namespace qv::ds {
namespace {

TEST(SchemaSqlTest, DeclaredTypesMapBackToAdoCodes) {
  const struct {
    const char* declared;
    int32_t type, size;
    bool auto_increment;
  } kCases[] = {
      {"VARCHAR(50)", kAdVarWChar, 50, false},
      {" nvarchar ( 8 ) ", kAdVarWChar, 8, false},
      {"TEXT", kAdLongVarWChar, 0, false},
      {"LONGTEXT", kAdLongVarWChar, 0, false},
      {"BIT", kAdBoolean, 0, false},
      {"DateTime", kAdDate, 0, false},
      {"SMALLINT", kAdSmallInt, 0, false},
      {"INTEGER", kAdInteger, 0, false},
      {"BIGINT", kAdInteger, 0, false},
      {"INTEGER COUNTER", kAdInteger, 0, true},
      {"SINGLE", kAdSingle, 0, false},
      {"REAL", kAdDouble, 0, false},
      {"NUMERIC(10,2)", kAdDouble, 0, false},
      {"LONGBINARY", kAdLongVarBinary, 0, false},
      {"BLOB", kAdLongVarBinary, 0, false},
      {"", kAdLongVarBinary, 0, false},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(ColumnFromDeclaredType("c", c.declared),
              (ColumnDef{"c", c.type, c.size, c.auto_increment}))
        << '"' << c.declared << '"';
  }
}

TEST(SchemaSqlTest, RulesReadWithoutRegardToCase) {
  const std::pair<const char*, int32_t> kCases[] = {
      {"CASCADE", kAdRiCascade},        {"set null", kAdRiSetNull},
      {"Set Default", kAdRiSetDefault}, {"NO ACTION", kAdRiNone},
      {"RESTRICT", kAdRiNone},          {"SETNULL", kAdRiNone}};
  for (const auto& [text, rule] : kCases)
    EXPECT_EQ(RuleFromText(text), rule) << text;
}

TEST(SchemaSqlTest, EditsTheItemsOfACreateTableStatement) {
  const std::string sql =
      "CREATE TABLE \"Raum\" (\"Nr\" VARCHAR(20) CHECK (length(\"Nr\") <= 20), "
      "Stock VARCHAR(20), CONSTRAINT \"Raum\" FOREIGN KEY (Stock, \"G\") "
      "REFERENCES [Stock] (Stock, G) ON DELETE CASCADE)";
  const CreateTableText parsed = ParseCreateTable(sql, "Raum");
  ASSERT_EQ(parsed.items.size(), 3u);
  EXPECT_EQ(sql.substr(parsed.items[0].begin,
                       parsed.items[0].end - parsed.items[0].begin),
            "\"Nr\" VARCHAR(20) CHECK (length(\"Nr\") <= 20)");
  EXPECT_FALSE(parsed.items[1].foreign_key);
  EXPECT_TRUE(parsed.items[2].foreign_key);
  EXPECT_EQ(parsed.items[2].constraint_name, "Raum");
  EXPECT_EQ(parsed.items[2].related_table, "Stock");
  EXPECT_EQ(parsed.items[2].columns, (std::vector<std::string>{"Stock", "G"}));

  EXPECT_EQ(RemoveItem(sql, parsed, 2),
            "CREATE TABLE \"Raum\" (\"Nr\" VARCHAR(20) CHECK (length(\"Nr\") "
            "<= 20), Stock VARCHAR(20))");
  EXPECT_EQ(RemoveItem(sql, parsed, 0).substr(0, 35),
            "CREATE TABLE \"Raum\" (Stock VARCHAR(");
  EXPECT_EQ(RenameTable(sql, parsed, "neu\"x").substr(0, 23),
            "CREATE TABLE \"neu\"\"x\" (");
  const std::string one = "create table t (a INTEGER)";
  EXPECT_EQ(AppendItem(one, ParseCreateTable(one, "t"), "CHECK (a > 0)"),
            "create table t (a INTEGER, CHECK (a > 0))");
}

TEST(SchemaSqlTest, UnreadableStatementsRaiseCatalogErrors) {
  for (const char* sql :
       {"CREATE VIEW v AS SELECT 1", "CREATE TABLE t", "CREATE TABLE (a)",
        "DROP TABLE t (a)", "CREATE TABLE t (a INTEGER"}) {
    EXPECT_TRUE(testing::RaisesError([&] { ParseCreateTable(sql, "t"); },
                                     dberr::kCatalog,
                                     "cannot read the definition of table 't'"))
        << sql;
  }
}

}  // namespace
}  // namespace qv::ds
