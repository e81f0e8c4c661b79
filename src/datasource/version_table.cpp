#include "datasource/version_table.h"

#include <string>

#include "datasource/db_connection.h"

namespace qv::ds {
namespace {

const std::string& SelectVersionSql() {
  static const std::string sql = "SELECT " + QuoteIdentifier("Version") +
                                 " FROM " + QuoteIdentifier("qvversions") +
                                 " WHERE " + QuoteIdentifier("Name") +
                                 " = ?1 COLLATE NOCASE";
  return sql;
}

}  // namespace

int32_t ReadTableVersion(DbConnection& con, std::string_view row) noexcept {
  try {
    auto rows = con.Query(SelectVersionSql(), {Variant(row)});
    if (rows.empty() || rows.front().empty()) return 0;
    return rows.front().front().ToLong();
  } catch (...) {
    return 0;
  }
}

void WriteTableVersion(DbConnection& con, std::string_view row,
                       int32_t version) {
  const std::string table = QuoteIdentifier("qvversions");
  const std::string name = QuoteIdentifier("Name");
  const std::string ver = QuoteIdentifier("Version");
  if (con.Query(SelectVersionSql(), {Variant(row)}).empty()) {
    con.Execute(
        "INSERT INTO " + table + " (" + name + ", " + ver + ") VALUES (?, ?)",
        {Variant(row), Variant(version)});
  } else {
    con.Execute("UPDATE " + table + " SET " + ver + " = ?1 WHERE " + name +
                    " = ?2 COLLATE NOCASE",
                {Variant(version), Variant(row)});
  }
}

}  // namespace qv::ds
