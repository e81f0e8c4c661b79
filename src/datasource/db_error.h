// Error numbers of the database engine adapter (DbConnection, DbCatalog).
// They lie in the object-error range at 0x80040000 + 0x2000 + n, clear of the
// library's object error 1000 (0x800403E8). The source of an error names the
// class and the operation ("DbConnection.Open", "DbCatalog.AddForeignKey");
// the description names the file, table or column concerned.
#ifndef QVGLOBAL_DATASOURCE_DB_ERROR_H_
#define QVGLOBAL_DATASOURCE_DB_ERROR_H_

#include <cstdint>

#include "com/error.h"

namespace qv::ds::dberr {

inline constexpr int32_t kBase = qv::err::kObjectBase + 0x2000;
// The connection string, or opening or creating the file, failed:
// "database file not found: '<path>'", "file is not a database: '<path>'",
// "database file already exists: '<path>'", "unsupported provider: '<p>'",
// "no Data Source in connection string", "connection is already open".
inline constexpr int32_t kConnection = kBase + 1;
// An operation needs an open connection: "connection is closed".
inline constexpr int32_t kNotOpen = kBase + 2;
// The engine failed to run a statement; the description is the engine's
// message ("no such table: x", ...).
inline constexpr int32_t kSql = kBase + 3;
// A value or a record breaks a rule of the table:
// "text too long for column 'c' of table 't': at most n characters",
// "value out of range for column 'c' of table 't': -32768 to 32767",
// "duplicate key in table 't': c1, c2",
// "column 'c' of table 't' must not be Null",
// "a relation between tables does not allow this change
//  (FOREIGN KEY constraint failed)",
// "table 't' has n record(s) without a matching record in 'p'".
inline constexpr int32_t kConstraint = kBase + 4;
// A catalogue request names something that is not there or is not valid:
// "table not found: 't'", "table already exists: 't'",
// "column not found: 'c' in table 't'", "foreign key not found: 'f' in table
// 't'", "invalid column definition: ...".
inline constexpr int32_t kCatalog = kBase + 5;
// Compacting failed: "compacting '<path>' failed: <reason>".
inline constexpr int32_t kCompact = kBase + 6;
// Another process holds the database longer than the busy timeout:
// "database is locked: '<path>'".
inline constexpr int32_t kBusy = kBase + 7;
// A transaction was used out of order: "transaction already finished",
// "inner transaction still open".
inline constexpr int32_t kTransaction = kBase + 8;

}  // namespace qv::ds::dberr

#endif  // QVGLOBAL_DATASOURCE_DB_ERROR_H_
