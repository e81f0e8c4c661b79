#include "datasource/db_maintenance.h"

#include "com/text.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"

namespace qv::ds {

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
                  QuoteIdentifier(column) + " = ?",
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
  // table, rowid, parent, foreign key index
  for (const auto& row : con.Query("PRAGMA foreign_key_check")) {
    const std::string rowid =
        row.at(1).IsNull() ? "?" : row.at(1).ToString();  // WITHOUT ROWID
    faults.push_back("row " + rowid + " of table '" + row.at(0).ToString() +
                     "' has no parent in '" + row.at(2).ToString() + "'");
  }
  return faults;
}

}  // namespace qv::ds
