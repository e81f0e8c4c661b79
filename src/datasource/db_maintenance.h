// Whole-database maintenance that the database container and the `qv` tool
// offer: emptying every table of a file in one transaction, and checking a
// file for damage and broken relations.
#ifndef QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_
#define QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_

#include <string>
#include <string_view>
#include <vector>

namespace qv::ds {

class DbConnection;

// Deletes the rows of every user table but `keep` (compared without regard
// to letter case), in one transaction; foreign keys are checked at commit,
// so the order of the tables does not matter. On failure nothing is
// deleted.
void DeleteAllRowsExcept(DbConnection& con, std::string_view keep);

// The faults that SQLite's integrity check and foreign-key check find, one
// line each, and foreign keys whose related table is missing ("table 't'
// refers to the missing table 'p' (foreign key 'f')"); empty when the
// database is sound.
std::vector<std::string> CheckDatabase(DbConnection& con);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_DB_MAINTENANCE_H_
