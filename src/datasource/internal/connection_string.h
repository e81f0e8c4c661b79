// Helpers of DbConnection for reaching a database file: reading an
// ADO-style connection string and finding a file whose path was written
// with other letter case (project folders copied from Windows).
// Threads: a parsed connection string is a value; parsing keeps no state.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_CONNECTION_STRING_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_CONNECTION_STRING_H_

#include <optional>
#include <string>
#include <string_view>

namespace qv::ds {

struct ConnectionSettings {
  std::string provider;     // as written; "" when the string names none
  std::string data_source;  // the "Data Source" value, unquoted
};

// Splits "Key=Value;Key=Value" (keys without regard to case and blanks;
// values may be enclosed in double or single quotes, which may hold ";").
// Raises kConnection "unsupported provider: 'x'" for a provider other than
// SQLite or Microsoft.Jet.OLEDB.4.0 and "no Data Source in connection
// string" when the path is missing.
ConnectionSettings ParseConnectionString(std::string_view connection_string,
                                         std::string_view source);

// Raises kConnection "invalid path (NUL character): '<path>'" (the NUL
// shown as \0) when `path` holds a NUL character, which the system would
// take as its end, and "path too long: '<path>'" when the path or one of its
// levels is longer than the system allows.
void CheckPathUsable(std::string_view path, std::string_view source);

// The path of an existing file system entry named by `path` (backslashes
// taken as separators): `path` itself when it exists as written, otherwise
// the entry found by matching each level without regard to letter case;
// std::nullopt when there is none.
std::optional<std::string> FindPathIgnoringCase(std::string_view path);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_CONNECTION_STRING_H_
