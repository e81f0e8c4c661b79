#include "datasource/internal/sql_values.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <cstdint>
#include <limits>

#include "com/error.h"
#include "com/text.h"
#include "com/variant_date.h"

namespace qv::ds {
namespace {

bool Contains(const std::string& s, std::string_view part) {
  return s.find(part) != std::string::npos;
}

Variant FromInt64(int64_t v) {
  if (v >= std::numeric_limits<int32_t>::min() &&
      v <= std::numeric_limits<int32_t>::max()) {
    return Variant(static_cast<int32_t>(v));
  }
  return Variant(static_cast<double>(v));
}

// The value as its storage class gives it.
Variant ReadStored(const SQLite::Column& c) {
  switch (c.getType()) {
    case SQLITE_INTEGER:
      return FromInt64(c.getInt64());
    case SQLITE_FLOAT:
      return Variant(c.getDouble());
    case SQLITE_NULL:
      return Variant(kNull);
    default:  // text and blobs: the bytes
      return Variant(std::string(static_cast<const char*>(c.getBlob()),
                                 static_cast<size_t>(c.getBytes())));
  }
}

bool IsNumber(const SQLite::Column& c) {
  return c.getType() == SQLITE_INTEGER || c.getType() == SQLITE_FLOAT;
}

}  // namespace

ReadAs ReadAsForDeclaredType(std::string_view declared_type) {
  const std::string t = text::ToLowerAscii(declared_type);
  if (t.empty()) return ReadAs::kStored;
  if (t == "bit" || t == "boolean") return ReadAs::kBoolean;
  if (t == "smallint") return ReadAs::kSmallInt;
  if (Contains(t, "int")) return ReadAs::kLong;
  if (t == "single") return ReadAs::kSingle;
  if (Contains(t, "doub") || Contains(t, "floa") || Contains(t, "real")) {
    return ReadAs::kDouble;
  }
  if (t == "datetime" || t == "date") return ReadAs::kDate;
  if (Contains(t, "char") || Contains(t, "text") || Contains(t, "clob")) {
    return ReadAs::kText;
  }
  return ReadAs::kStored;
}

void BindParams(SQLite::Statement& statement,
                const std::vector<Variant>& params) {
  for (size_t i = 0; i < params.size(); ++i) {
    const int n = static_cast<int>(i) + 1;
    const Variant& v = params[i];
    switch (v.type()) {
      case VarType::kEmpty:
      case VarType::kNull:
        statement.bind(n);
        break;
      case VarType::kBoolean:
        statement.bind(n, v.ToBoolean() ? -1 : 0);
        break;
      case VarType::kInteger:
      case VarType::kLong:
        statement.bind(n, v.ToLong());
        break;
      case VarType::kSingle:
      case VarType::kDouble:
        statement.bind(n, v.ToDouble());
        break;
      case VarType::kDate:
        statement.bind(n, FormatDbDate(v.ToDate()));
        break;
      case VarType::kString:
        statement.bind(n, *v.AsString());
        break;
      default:
        throw Error::Runtime(err::kTypeMismatch);
    }
  }
}

std::vector<ReadAs> ResultKinds(const SQLite::Statement& statement) {
  std::vector<ReadAs> kinds;
  for (int i = 0; i < statement.getColumnCount(); ++i) {
    try {
      kinds.push_back(
          ReadAsForDeclaredType(statement.getColumnDeclaredType(i)));
    } catch (const SQLite::Exception&) {  // an expression: no declared type
      kinds.push_back(ReadAs::kStored);
    }
  }
  return kinds;
}

Variant ReadColumn(const SQLite::Statement& statement, int index, ReadAs kind) {
  const SQLite::Column c = statement.getColumn(index);
  if (c.isNull()) return Variant(kNull);
  switch (kind) {
    case ReadAs::kBoolean:
      if (IsNumber(c)) return Variant(c.getDouble() != 0);
      break;
    case ReadAs::kSmallInt:
      if (c.getType() == SQLITE_INTEGER && c.getInt64() >= INT16_MIN &&
          c.getInt64() <= INT16_MAX) {
        return Variant(static_cast<int16_t>(c.getInt64()));
      }
      break;
    case ReadAs::kSingle:
      if (IsNumber(c)) return Variant(static_cast<float>(c.getDouble()));
      break;
    case ReadAs::kDouble:
      if (IsNumber(c)) return Variant(c.getDouble());
      break;
    case ReadAs::kDate:
      if (c.getType() == SQLITE_TEXT) {
        if (auto d = ParseDate(c.getString())) return Variant(*d);
      } else if (IsNumber(c)) {
        return Variant(Date{c.getDouble()});
      }
      break;
    case ReadAs::kText:
      return Variant(c.getString());
    case ReadAs::kLong:
    case ReadAs::kStored:
      break;
  }
  return ReadStored(c);
}

std::string FormatDbDate(Date date) {
  std::string s = FormatDate(date);
  if (s.find('-', 1) == std::string::npos) s = "1899-12-30 " + s;
  if (s.find(':') == std::string::npos) s += " 00:00:00";
  return s;
}

}  // namespace qv::ds
