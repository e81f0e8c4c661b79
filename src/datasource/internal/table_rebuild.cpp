#include "datasource/internal/table_rebuild.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <vector>

#include "com/error.h"
#include "datasource/db_catalog.h"
#include "datasource/db_error.h"
#include "datasource/internal/db_handle.h"
#include "datasource/internal/schema_sql.h"

namespace qv::ds {
namespace {

// Sets a connection flag for the lifetime of the object.
class PragmaScope {
 public:
  PragmaScope(DbConnection& con, std::string pragma, bool on)
      : con_(con), pragma_(std::move(pragma)), on_(on) {
    con_.Execute("PRAGMA " + pragma_ + (on_ ? "=ON" : "=OFF"));
  }
  ~PragmaScope() {
    try {
      con_.Execute("PRAGMA " + pragma_ + (on_ ? "=OFF" : "=ON"));
    } catch (...) {  // the connection may be gone; nothing to restore then
    }
  }
  PragmaScope(const PragmaScope&) = delete;
  PragmaScope& operator=(const PragmaScope&) = delete;

 private:
  DbConnection& con_;
  std::string pragma_;
  bool on_;
};

std::string FreeTableName(DbConnection& con) {
  const DbCatalog catalog(con);
  for (int n = 1;; ++n) {
    std::string name = "qv_rebuild_" + std::to_string(n);
    if (!catalog.HasTable(name)) return name;
  }
}

std::string ColumnList(DbConnection& con, const std::string& table) {
  std::string list;
  for (const ColumnDef& c : DbCatalog(con).Columns(table)) {
    if (!list.empty()) list += ", ";
    list += QuoteIdentifier(c.name);
  }
  return list;
}

// Statements that create the table's indexes and triggers (not the ones
// the engine makes for keys by itself).
std::vector<std::string> DependentObjects(DbConnection& con,
                                          const std::string& table) {
  std::vector<std::string> sql;
  for (const auto& row : con.Query(
           "SELECT sql FROM sqlite_master WHERE type IN ('index', 'trigger') "
           "AND "
           "tbl_name = ?1 COLLATE NOCASE AND sql IS NOT NULL ORDER BY rowid",
           {Variant(table)})) {
    sql.push_back(row[0].ToString());
  }
  return sql;
}

void CheckForeignKeys(DbConnection& con, const std::string& table) {
  const auto rows = con.Query("SELECT parent FROM pragma_foreign_key_check(?1)",
                              {Variant(table)});
  if (rows.empty()) return;
  throw Error(dberr::kConstraint, "DbCatalog",
              "table '" + table + "' has " + std::to_string(rows.size()) +
                  " record(s) without a matching record in '" +
                  rows[0][0].ToString() + "'");
}

}  // namespace

void RebuildTable(DbConnection& con, const std::string& table,
                  const std::string& create_sql) {
  if (con.TransactionDepth() > 0 ||
      sqlite3_get_autocommit(DbHandle(con).getHandle()) == 0) {
    throw Error(dberr::kTransaction, "DbCatalog",
                "schema rebuild not possible inside a transaction");
  }
  PragmaScope foreign_keys_off(con, "foreign_keys", false);
  DbConnection::Transaction transaction(con);
  const std::vector<std::string> dependents = DependentObjects(con, table);
  const std::string columns = ColumnList(con, table);
  const std::string temp = FreeTableName(con);
  const std::string quoted = QuoteIdentifier(table);
  con.Execute(
      RenameTable(create_sql, ParseCreateTable(create_sql, table), temp));
  con.Execute("INSERT INTO " + QuoteIdentifier(temp) + " (" + columns +
              ") SELECT " + columns + " FROM " + quoted);
  con.Execute("DROP TABLE " + quoted);
  {
    // Rename without rewriting references elsewhere: the tables that refer
    // to `table` shall go on referring to it.
    PragmaScope legacy(con, "legacy_alter_table", true);
    con.Execute("ALTER TABLE " + QuoteIdentifier(temp) + " RENAME TO " +
                quoted);
  }
  for (const std::string& sql : dependents) con.Execute(sql);
  CheckForeignKeys(con, table);
  transaction.Commit();
}

}  // namespace qv::ds
