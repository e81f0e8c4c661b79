// Rebuilding a table under a new CREATE TABLE statement, the way SQLite
// changes constraints it cannot alter: a new table is filled with the old
// rows, the old one dropped and the new one renamed, all in one
// transaction, with the table's indexes and triggers recreated and its
// foreign keys checked before the commit. Internal to src/datasource/.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_TABLE_REBUILD_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_TABLE_REBUILD_H_

#include <string>

#include "datasource/db_connection.h"

namespace qv::ds {

// `create_sql` must keep the table's name and columns. Foreign keys are
// switched off for the rebuild (so that dropping the old table cascades to
// nothing), which SQLite allows only outside a transaction: raises
// kTransaction when one is open. Rows that break the table's foreign keys
// raise kConstraint "table 't' has n record(s) without a matching record in
// 'p'"; on any failure the table stays as it was.
void RebuildTable(DbConnection& con, const std::string& table,
                  const std::string& create_sql);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_TABLE_REBUILD_H_
