#include "data/internal/column_descriptor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <string>

#include "data/qv_connection_error.h"

namespace qv {
namespace {

constexpr std::array<int32_t, 8> kTableTypes = {
    ds::kAdVarWChar, ds::kAdLongVarWChar, ds::kAdBoolean, ds::kAdDate,
    ds::kAdSmallInt, ds::kAdInteger,      ds::kAdSingle,  ds::kAdDouble};
constexpr std::array<int32_t, 5> kConvertTypes = {
    ds::kAdVarWChar, ds::kAdLongVarWChar, ds::kAdBoolean, ds::kAdDate,
    ds::kAdInteger};

struct KindRules {
  const char* too_few;       // text before the position
  const char* unknown_type;  // text for a type code not accepted
  const char* unknown_type_method;
  std::span<const int32_t> types;
};

KindRules RulesFor(DescriptorKind kind) {
  switch (kind) {
    case DescriptorKind::kKey:
      return {"too few arguments in vKey after pos: ", "unknown key type",
              "addTable", kTableTypes};
    case DescriptorKind::kData:
      return {"too few arguments in vData after pos: ", "unknown data type",
              "addTable", kTableTypes};
    case DescriptorKind::kConvert:
      break;
  }
  return {"too few arguments after pos: ", "unknown field type", "convertTable",
          kConvertTypes};
}

// The type code an element holds, if it holds a whole number.
std::optional<int32_t> TypeCode(const Variant& v) {
  if (v.IsEmpty() || v.IsNull() || v.IsObject() || v.IsArray() ||
      !IsNumeric(v)) {
    return std::nullopt;
  }
  double d = v.ToDouble();
  if (d != std::floor(d) || d < INT32_MIN || d > INT32_MAX) return std::nullopt;
  return static_cast<int32_t>(d);
}

}  // namespace

bool IsEmptyDescriptor(const Variant& descriptor) {
  if (descriptor.IsEmpty() || descriptor.IsNull()) return true;
  return descriptor.IsArray() && descriptor.ToArray().empty();
}

std::vector<ds::ColumnDef> ParseColumnDescriptor(const SafeArray& items,
                                                 DescriptorKind kind) {
  const KindRules rules = RulesFor(kind);
  // The position reported for a missing type or size is that of the
  // column's name; the source names the conversion for every array.
  auto too_few = [&](int32_t pos) {
    return ConnectionError(QvConnectionErrorUnknownFieldType, "convertTable",
                           rules.too_few + std::to_string(pos));
  };
  std::vector<ds::ColumnDef> columns;
  int32_t i = items.LBound();
  while (i <= items.UBound()) {
    ds::ColumnDef column;
    column.name = items[i].ToString();
    if (i + 1 > items.UBound()) throw too_few(i);
    std::optional<int32_t> type = TypeCode(items[i + 1]);
    if (!type || std::ranges::find(rules.types, *type) == rules.types.end()) {
      throw ConnectionError(QvConnectionErrorUnknownFieldType,
                            rules.unknown_type_method, rules.unknown_type);
    }
    column.type = *type;
    if (*type == ds::kAdVarWChar) {
      if (i + 2 > items.UBound()) throw too_few(i);
      column.size = items[i + 2].ToLong();
      i += 3;
    } else {
      i += 2;
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

}  // namespace qv
