// The version table "qvversions" of a database: one row per table under the
// table's normalised name with "_t" appended ("raum_t"), plus the rows of
// the connection-wide values ("qvversions_t", "qvdatabasesize_t"). Names
// and versions are bound as values, so a name with a quote in it is only a
// name. Rows are found without regard to ASCII letter case whatever the
// column's collation, since files made by other programs may hold "Alt_T"
// in a "Name" column declared without COLLATE NOCASE; an existing row keeps
// its spelling.
#ifndef QVGLOBAL_DATA_VERSION_TABLE_H_
#define QVGLOBAL_DATA_VERSION_TABLE_H_

#include <cstdint>
#include <string_view>

namespace qv::ds {
class DbConnection;
}

namespace qv {

// The version stored under `row`; 0 when there is no such row or the
// database cannot answer (no version table, connection closed).
int32_t ReadTableVersion(ds::DbConnection& con, std::string_view row) noexcept;

// Stores `version` under `row`, adding the row when it is new.
void WriteTableVersion(ds::DbConnection& con, std::string_view row,
                       int32_t version);

}  // namespace qv

#endif  // QVGLOBAL_DATA_VERSION_TABLE_H_
