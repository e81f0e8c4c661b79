// What `qv db info` shows of a database file: its logical tables (a key
// table x with its data table x_t) with versions and key columns, other
// tables, the relations between key tables, and the connection-wide
// version and size figure.
#ifndef QVGLOBAL_TOOLS_QV_DB_REPORT_H_
#define QVGLOBAL_TOOLS_QV_DB_REPORT_H_

#include <ostream>
#include <string>

namespace qv::tool {

void PrintDatabaseInfo(const std::string& file, std::ostream& out);

}  // namespace qv::tool

#endif  // QVGLOBAL_TOOLS_QV_DB_REPORT_H_
