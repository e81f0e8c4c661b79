// Field values of record sets and data sets: converting a value to the type
// of the column it is written to (with the column's length and range
// rules), and comparing stored values the way the database compares them
// (text without regard to ASCII letter case, as the NOCASE collation of the
// text columns does). Free functions without state.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_FIELD_VALUE_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_FIELD_VALUE_H_

#include <string_view>

#include "com/variant.h"
#include "datasource/ado_types.h"
#include "datasource/internal/sql_values.h"

namespace qv::ds {

// How a column of ADO type `type` is read back from the database.
ReadAs ReadAsForAdoType(int32_t type);

// `value` converted to the type of `column` of `table`, ready to be bound:
// Empty and Null become Null; text is checked against the column's length;
// numbers against their range. Raises 13 (type mismatch), 6 (overflow) or
// the adapter's constraint error for text that is too long; the
// description names the column and the table. `source` is the error source.
Variant ToColumnValue(const Variant& value, const ColumnDef& column,
                      std::string_view table, std::string_view source);

// ASCII letters folded, other bytes compared as they are (SQLite's NOCASE).
bool EqualsNoCase(std::string_view a, std::string_view b);
int CompareNoCase(std::string_view a, std::string_view b);

// True when a stored value equals a wanted one as a lookup by key compares
// them: text without regard to letter case, numbers by value, a number and
// a numeric text by value; Null and Empty equal nothing.
bool KeyEquals(const Variant& stored, const Variant& wanted);

// Order of values in a sort: Null and Empty first, then numbers (Booleans
// and dates by their numeric value), then text without regard to letter
// case. Returns -1, 0 or 1.
int CompareForSort(const Variant& a, const Variant& b);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_FIELD_VALUE_H_
