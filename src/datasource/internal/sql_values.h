// Conversions between qv::Variant and SQLite values for the engine adapter:
// binding parameters and reading result columns by their declared types.
// Internal to src/datasource/.
// Threads: the functions keep no state.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_SQL_VALUES_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_SQL_VALUES_H_

#include <string>
#include <string_view>
#include <vector>

#include "com/variant.h"

namespace SQLite {
class Statement;
}

namespace qv::ds {

// How a result column is read, from its declared type.
enum class ReadAs {
  kStored,
  kBoolean,
  kSmallInt,
  kLong,
  kSingle,
  kDouble,
  kDate,
  kText
};

ReadAs ReadAsForDeclaredType(std::string_view declared_type);

// Binds params[i] to parameter i + 1. Objects and arrays raise 13.
void BindParams(SQLite::Statement& statement,
                const std::vector<Variant>& params);
// The read kinds of a prepared statement's result columns.
std::vector<ReadAs> ResultKinds(const SQLite::Statement& statement);
// Column `index` of the current row.
Variant ReadColumn(const SQLite::Statement& statement, int index, ReadAs kind);

// A date as stored: "YYYY-MM-DD hh:mm:ss".
std::string FormatDbDate(Date date);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_SQL_VALUES_H_
