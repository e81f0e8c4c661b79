#include "datasource/db_maintenance.h"

#include <string>
#include <vector>

#include "com/text.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"

namespace qv::ds {
namespace {

// Rows of `table` whose parent row is missing: table, rowid, parent, key.
void AddOrphanRows(DbConnection& con, const std::string& table,
                   std::vector<std::string>& faults) {
  for (const auto& row :
       con.Query("PRAGMA foreign_key_check(" + QuoteIdentifier(table) + ")")) {
    const std::string rowid =
        row.at(1).IsNull() ? "?" : row.at(1).ToString();  // WITHOUT ROWID
    faults.push_back("row " + rowid + " of table '" + row.at(0).ToString() +
                     "' has no parent in '" + row.at(2).ToString() + "'");
  }
}

}  // namespace

void DeleteAllRowsExcept(DbConnection& con, std::string_view keep) {
  DbConnection::Transaction transaction(con);
  con.Execute("PRAGMA defer_foreign_keys = ON");
  for (const std::string& table : DbCatalog(con).Tables()) {
    if (text::EqualsText(table, keep)) continue;
    con.Execute("DELETE FROM " + QuoteIdentifier(table));
  }
  transaction.Commit();
}

int32_t DeleteRowsWhere(DbConnection& con, std::string_view table,
                        std::string_view column, const Variant& value) {
  con.Execute("DELETE FROM " + QuoteIdentifier(table) + " WHERE " +
                  QuoteIdentifier(column) + " = ?1 COLLATE NOCASE",
              {value});
  return con.Changes();
}

std::vector<std::string> CheckDatabase(DbConnection& con, bool quick) {
  std::vector<std::string> faults;
  for (const auto& row :
       con.Query(quick ? "PRAGMA quick_check" : "PRAGMA integrity_check")) {
    const std::string line = row.at(0).ToString();
    if (line != "ok") faults.push_back(line);
  }
  // A foreign key to a table that is not there makes SQLite's check fail
  // as a whole ("no such table"); such keys are faults of their own, and
  // the tables that hold them are left out of the row check.
  DbCatalog catalog(con);
  std::vector<std::string> checkable;
  for (const std::string& table : catalog.Tables()) {
    bool sound = true;
    for (const ForeignKeyDef& fk : catalog.ForeignKeys(table)) {
      if (catalog.HasTable(fk.related_table)) continue;
      faults.push_back(
          "table '" + table + "' refers to the missing table '" +
          fk.related_table + "'" +
          (fk.name.empty() ? "" : " (foreign key '" + fk.name + "')"));
      sound = false;
    }
    if (sound) checkable.push_back(table);
  }
  for (const std::string& table : checkable) AddOrphanRows(con, table, faults);
  return faults;
}

}  // namespace qv::ds
