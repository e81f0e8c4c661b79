// Whole-database maintenance that the database container and the `qv` tool
// offer: emptying every table of a file in one transaction, deleting the
// rows of a table that match one value, and checking a file for damage and
// broken relations. Engine errors (numbers of db_error.h) pass through.
// Threads: as the connection passed in (one thread at a time).
#ifndef QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_
#define QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "com/variant.h"

namespace qv::ds {

class DbConnection;

// Deletes the rows of every user table but `keep` (compared without regard
// to letter case), in one transaction; foreign keys are checked at commit,
// so the order of the tables does not matter. On failure nothing is
// deleted.
void DeleteAllRowsExcept(DbConnection& con, std::string_view keep);

// Deletes the rows of `table` whose `column` equals `value` (text compared
// without regard to ASCII letter case whatever the column's collation, as
// files of other programs may lack COLLATE NOCASE); returns how many went.
int32_t DeleteRowsWhere(DbConnection& con, std::string_view table,
                        std::string_view column, const Variant& value);

// The faults that SQLite's integrity check and foreign-key check find, one
// line each, and foreign keys whose related table is missing ("table 't'
// refers to the missing table 'p' (foreign key 'f')"); empty when the
// database is sound. `quick` runs the faster check that skips comparing
// indexes with their tables.
std::vector<std::string> CheckDatabase(DbConnection& con, bool quick = false);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_
