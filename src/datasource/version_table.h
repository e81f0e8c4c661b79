// The version table "qvversions" of a database: one row per table under the
// table's normalised name with "_t" appended ("raum_t"), plus the rows of
// the connection-wide values ("qvversions_t", "qvdatabasesize_t"). Names
// and versions are bound as values, so a name with a quote in it is only a
// name. Rows are found without regard to ASCII letter case whatever the
// column's collation, since files made by other programs may hold "Alt_T"
// in a "Name" column declared without COLLATE NOCASE; an existing row keeps
// its spelling.
// Threads: as the connection passed in (one thread at a time).
#ifndef QVGLOBAL_DATASOURCE_VERSION_TABLE_H_
#define QVGLOBAL_DATASOURCE_VERSION_TABLE_H_

#include <cstdint>
#include <string_view>

namespace qv::ds {

class DbConnection;

// The version stored under `row`; 0 when there is no such row or the
// database cannot answer (no version table, connection closed).
int32_t ReadTableVersion(DbConnection& con, std::string_view row) noexcept;

// Stores `version` under `row`, adding the row when it is new. Engine
// errors (numbers of db_error.h) pass through.
void WriteTableVersion(DbConnection& con, std::string_view row,
                       int32_t version);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_VERSION_TABLE_H_
