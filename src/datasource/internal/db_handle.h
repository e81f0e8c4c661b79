// The SQLite handle behind a DbConnection, for the engine adapter's own
// statements and for test fixtures and benchmarks that build tables or rows
// directly. No part of the public interface: consumers reach a database only
// through DbConnection's SQL calls and the catalogue.
// Threads: as the DbConnection it comes from (one thread at a time).
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_DB_HANDLE_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_DB_HANDLE_H_

#include "datasource/db_connection.h"

namespace SQLite {
class Database;
}

namespace qv::ds {
namespace internal {

struct DbHandleAccess {
  static SQLite::Database& Get(DbConnection& con) { return con.db(); }
};

}  // namespace internal

// The open handle of `con`; raises kNotOpen when the connection is closed.
// The reference is valid until the connection is closed.
inline SQLite::Database& DbHandle(DbConnection& con) {
  return internal::DbHandleAccess::Get(con);
}

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_DB_HANDLE_H_
