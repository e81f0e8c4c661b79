#include "datasource/internal/field_value.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "com/error.h"
#include "com/text.h"
#include "datasource/db_error.h"
#include "datasource/internal/engine_error.h"

namespace qv::ds {
namespace {

char FoldAscii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string ColumnText(const ColumnDef& column, std::string_view table) {
  return "column '" + column.name + "' of table '" + std::string(table) + "'";
}

[[noreturn]] void RaiseConversion(const Error& e, const Variant& value,
                                  const ColumnDef& column,
                                  std::string_view table,
                                  std::string_view source) {
  const std::string what =
      e.number() == err::kOverflow ? "Overflow" : "Type mismatch";
  throw Error(e.number(), std::string(source),
              what + ": " + ColumnText(column, table) + " cannot take " +
                  value.Describe());
}

Variant Convert(const Variant& value, const ColumnDef& column,
                std::string_view table, std::string_view source) {
  switch (column.type) {
    case kAdVarWChar:
    case kAdLongVarWChar: {
      std::string s = value.ToString();
      if (column.type == kAdVarWChar && column.size > 0 &&
          text::Len(s) > static_cast<size_t>(column.size)) {
        throw Error(dberr::kConstraint, std::string(source),
                    TextTooLongText(table, column.name, column.size));
      }
      return Variant(std::move(s));
    }
    case kAdBoolean:
      return Variant(value.ToBoolean());
    case kAdDate:
      return Variant(value.ToDate());
    case kAdSmallInt: {
      const double d = value.ToDouble();
      if (std::nearbyint(d) < -32768 || std::nearbyint(d) > 32767) {
        throw Error(dberr::kConstraint, std::string(source),
                    SmallIntRangeText(table, column.name));
      }
      return Variant(value.ToInteger());
    }
    case kAdInteger:
      return Variant(value.ToLong());
    case kAdSingle:
      return Variant(value.ToSingle());
    case kAdDouble:
      return Variant(value.ToDouble());
    case kAdLongVarBinary:
      if (!value.IsString()) throw Error::Runtime(err::kTypeMismatch);
      return value;
    default:
      return value;
  }
}

// A numeric view of a value: numbers, Booleans (-1/0) and dates (serial).
std::optional<double> NumberOf(const Variant& v) {
  switch (v.type()) {
    case VarType::kBoolean:
      return v.ToBoolean() ? -1.0 : 0.0;
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kSingle:
    case VarType::kDouble:
      return v.ToDouble();
    case VarType::kDate:
      return v.ToDate().serial;
    default:
      return std::nullopt;
  }
}

// Sort classes: nothing, numbers, text, anything else.
int SortClass(const Variant& v) {
  if (v.IsEmpty() || v.IsNull()) return 0;
  if (NumberOf(v)) return 1;
  if (v.IsString()) return 2;
  return 3;
}

}  // namespace

ReadAs ReadAsForAdoType(int32_t type) {
  switch (type) {
    case kAdVarWChar:
    case kAdLongVarWChar:
      return ReadAs::kText;
    case kAdBoolean:
      return ReadAs::kBoolean;
    case kAdDate:
      return ReadAs::kDate;
    case kAdSmallInt:
      return ReadAs::kSmallInt;
    case kAdInteger:
      return ReadAs::kLong;
    case kAdSingle:
      return ReadAs::kSingle;
    case kAdDouble:
      return ReadAs::kDouble;
    default:
      return ReadAs::kStored;
  }
}

Variant ToColumnValue(const Variant& value, const ColumnDef& column,
                      std::string_view table, std::string_view source) {
  if (value.IsEmpty() || value.IsNull()) return Variant(kNull);
  try {
    if (value.IsObject() || value.IsArray())
      throw Error::Runtime(err::kTypeMismatch);
    return Convert(value, column, table, source);
  } catch (const Error& e) {
    if (e.number() == err::kTypeMismatch || e.number() == err::kOverflow) {
      RaiseConversion(e, value, column, table, source);
    }
    throw;
  }
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  }
  return true;
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    const auto x = static_cast<unsigned char>(FoldAscii(a[i]));
    const auto y = static_cast<unsigned char>(FoldAscii(b[i]));
    if (x != y) return x < y ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool KeyEquals(const Variant& stored, const Variant& wanted) {
  if (const std::string* s = stored.AsString()) {
    if (const std::string* w = wanted.AsString()) return EqualsNoCase(*s, *w);
    if (!NumberOf(wanted)) return false;
    return EqualsNoCase(*s, wanted.ToString());
  }
  const std::optional<double> n = NumberOf(stored);
  if (!n) return false;
  std::optional<double> w = NumberOf(wanted);
  if (!w && wanted.IsString()) w = ParseNumber(*wanted.AsString());
  return w && *w == *n;
}

int CompareForSort(const Variant& a, const Variant& b) {
  const int ca = SortClass(a), cb = SortClass(b);
  if (ca != cb) return ca < cb ? -1 : 1;
  if (ca == 1) {
    const double x = *NumberOf(a), y = *NumberOf(b);
    return x < y ? -1 : (x > y ? 1 : 0);
  }
  if (ca == 2) return CompareNoCase(*a.AsString(), *b.AsString());
  return 0;
}

}  // namespace qv::ds
