#include "com/variant.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <ostream>

#include "com/error.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant_date.h"

namespace qv {
namespace {

[[noreturn]] void Raise(int32_t number) { throw Error::Runtime(number); }

template <class Int>
Int RoundToInt(double d) {
  if (std::isnan(d)) Raise(err::kOverflow);
  const double r = std::nearbyint(d);  // round half to even
  if (r < static_cast<double>(std::numeric_limits<Int>::min()) ||
      r > static_cast<double>(std::numeric_limits<Int>::max())) {
    Raise(err::kOverflow);
  }
  return static_cast<Int>(r);
}

std::optional<bool> ParseBooleanText(std::string_view s) {
  const std::string t = text::Trim(s);
  if (text::EqualsText(t, "True")) return true;
  if (text::EqualsText(t, "False")) return false;
  return std::nullopt;
}

bool IsSpace(char c) { return c == ' ' || c == '\t'; }

std::optional<double> ParseRadix(std::string_view s, int radix) {
  if (s.empty()) return std::nullopt;
  int64_t value = 0;
  auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), value, radix);
  if (ec != std::errc() || ptr != s.data() + s.size()) return std::nullopt;
  // &H and &O literals are 16- or 32-bit two's complement values.
  if (value <= 0xFFFF && s.size() <= (radix == 16 ? 4u : 6u)) {
    return static_cast<int16_t>(value);
  }
  if (value <= 0xFFFFFFFFLL) return static_cast<int32_t>(value);
  return std::nullopt;
}

}  // namespace

Variant::Variant(SafeArray a)
    : value_(ArrayBox{std::make_shared<SafeArray>(std::move(a))}) {}

Variant::Variant(Variant&&) noexcept = default;

Variant::Variant(const Variant& other) : value_(other.value_) {
  if (auto* box = std::get_if<ArrayBox>(&value_)) {
    box->array = std::make_shared<SafeArray>(*box->array);
  }
}

Variant& Variant::operator=(const Variant& other) {
  // When this holds no array or object, `other` cannot live inside what the
  // assignment replaces, and a plain assignment reuses a string's buffer:
  // record sets copy every field of a row this way on each move.
  const auto owns_others = [](const Storage& v) {
    return std::holds_alternative<ArrayBox>(v) ||
           std::holds_alternative<ObjectPtr>(v);
  };
  if (!owns_others(value_) && !std::holds_alternative<ArrayBox>(other.value_)) {
    value_ = other.value_;
    return *this;
  }
  // Copy first: `other` may be an element of the array that this assignment
  // replaces (v = v.ToArray()[0]), or a member of the object it releases.
  Variant copy(other);
  value_ = std::move(copy.value_);
  return *this;
}

Variant::~Variant() = default;

VarType Variant::type() const {
  static constexpr VarType kTypes[] = {
      VarType::kEmpty,  VarType::kNull,   VarType::kBoolean, VarType::kInteger,
      VarType::kLong,   VarType::kSingle, VarType::kDouble,  VarType::kDate,
      VarType::kString, VarType::kObject, VarType::kArray};
  return kTypes[value_.index()];
}

bool Variant::IsArray() const {
  return std::holds_alternative<ArrayBox>(value_);
}

bool Variant::IsNumberType() const {
  const VarType t = type();
  return t == VarType::kBoolean || t == VarType::kInteger ||
         t == VarType::kLong || t == VarType::kSingle ||
         t == VarType::kDouble || t == VarType::kDate;
}

bool Variant::IsNothing() const {
  const auto* o = std::get_if<ObjectPtr>(&value_);
  return o != nullptr && *o == nullptr;
}

std::string Variant::ToString() const {
  switch (type()) {
    case VarType::kEmpty:
      return "";
    case VarType::kNull:
      Raise(err::kInvalidUseOfNull);
    case VarType::kBoolean:
      return std::get<bool>(value_) ? "True" : "False";
    case VarType::kInteger:
      return std::to_string(std::get<int16_t>(value_));
    case VarType::kLong:
      return std::to_string(std::get<int32_t>(value_));
    case VarType::kSingle: {
      const float f = std::get<float>(value_);
      return f == 0 ? "0" : fmt::format("{:.7G}", static_cast<double>(f));
    }
    case VarType::kDouble:
      return FormatDouble(std::get<double>(value_));
    case VarType::kDate:
      return FormatDate(std::get<Date>(value_));
    case VarType::kString:
      return std::get<std::string>(value_);
    default:
      Raise(err::kTypeMismatch);
  }
}

double Variant::ToDouble() const {
  switch (type()) {
    case VarType::kEmpty:
      return 0;
    case VarType::kNull:
      Raise(err::kInvalidUseOfNull);
    case VarType::kBoolean:
      return std::get<bool>(value_) ? -1 : 0;
    case VarType::kInteger:
      return std::get<int16_t>(value_);
    case VarType::kLong:
      return std::get<int32_t>(value_);
    case VarType::kSingle:
      return std::get<float>(value_);
    case VarType::kDouble:
      return std::get<double>(value_);
    case VarType::kDate:
      return std::get<Date>(value_).serial;
    case VarType::kString: {
      const std::string& s = std::get<std::string>(value_);
      if (auto d = ParseNumber(s)) return *d;
      if (auto b = ParseBooleanText(s)) return *b ? -1 : 0;
      Raise(err::kTypeMismatch);
    }
    default:
      Raise(err::kTypeMismatch);
  }
}

int32_t Variant::ToLong() const {
  if (const auto* l = std::get_if<int32_t>(&value_)) return *l;
  return RoundToInt<int32_t>(ToDouble());
}

int16_t Variant::ToInteger() const {
  if (const auto* i = std::get_if<int16_t>(&value_)) return *i;
  return RoundToInt<int16_t>(ToDouble());
}

float Variant::ToSingle() const {
  const double d = ToDouble();
  if (std::isfinite(d) && std::fabs(d) > std::numeric_limits<float>::max()) {
    Raise(err::kOverflow);
  }
  return static_cast<float>(d);
}

bool Variant::ToBoolean() const {
  if (const auto* b = std::get_if<bool>(&value_)) return *b;
  if (const auto* s = std::get_if<std::string>(&value_)) {
    if (auto b = ParseBooleanText(*s)) return *b;
  }
  return ToDouble() != 0;
}

namespace {

// A number as a date: 100-01-01 to 9999-12-31 23:59:59, as automation
// allows; outside that range (or not finite) error 6.
Date CheckedDate(double serial) {
  if (!(serial > kFirstDaySerial - 1) || !(serial < kLastDaySerial + 1)) {
    Raise(err::kOverflow);
  }
  return Date{serial};
}

}  // namespace

Date Variant::ToDate() const {
  if (const auto* d = std::get_if<Date>(&value_)) return *d;
  if (const auto* s = std::get_if<std::string>(&value_)) {
    if (auto d = ParseDate(*s)) return *d;
    if (auto n = ParseNumber(*s)) return CheckedDate(*n);
    Raise(err::kTypeMismatch);
  }
  return CheckedDate(ToDouble());
}

ObjectPtr Variant::ToObject() const {
  if (const auto* o = std::get_if<ObjectPtr>(&value_)) return *o;
  Raise(err::kTypeMismatch);
}

const SafeArray& Variant::ToArray() const {
  if (const auto* box = std::get_if<ArrayBox>(&value_)) return *box->array;
  Raise(err::kTypeMismatch);
}

SafeArray& Variant::ToArray() {
  if (auto* box = std::get_if<ArrayBox>(&value_)) return *box->array;
  Raise(err::kTypeMismatch);
}

bool Variant::operator==(const Variant& other) const {
  if (value_.index() != other.value_.index()) return false;
  if (const auto* box = std::get_if<ArrayBox>(&value_)) {
    return *box->array == *std::get<ArrayBox>(other.value_).array;
  }
  return std::visit(
      [&other](const auto& v) {
        using T = std::decay_t<decltype(v)>;
        if constexpr (std::is_same_v<T, ArrayBox>) {
          return false;
        } else if constexpr (std::is_same_v<T, std::monostate>) {
          return true;
        } else {
          return v == std::get<T>(other.value_);
        }
      },
      value_);
}

std::string Variant::Describe() const {
  switch (type()) {
    case VarType::kEmpty:
      return "Empty";
    case VarType::kNull:
      return "Null";
    case VarType::kString:
      return fmt::format("String \"{}\"", std::get<std::string>(value_));
    case VarType::kObject:
      return IsNothing() ? "Nothing" : "Object";
    case VarType::kArray:
      return fmt::format("Array({} To {})", ToArray().LBound(),
                         ToArray().UBound());
    case VarType::kBoolean:
      return "Boolean " + ToString();
    case VarType::kInteger:
      return "Integer " + ToString();
    case VarType::kLong:
      return "Long " + ToString();
    case VarType::kSingle:
      return "Single " + ToString();
    case VarType::kDouble:
      return "Double " + ToString();
    case VarType::kDate:
      return "Date " + ToString();
  }
  return "?";
}

std::ostream& operator<<(std::ostream& os, const Variant& v) {
  return os << v.Describe();
}

std::optional<double> ParseNumber(std::string_view text) {
  size_t b = 0, e = text.size();
  while (b < e && IsSpace(text[b])) ++b;
  while (e > b && IsSpace(text[e - 1])) --e;
  std::string_view s = text.substr(b, e - b);
  if (s.size() > 2 && s[0] == '&') {
    const char r = static_cast<char>(s[1] | 0x20);
    if (r == 'h') return ParseRadix(s.substr(2), 16);
    if (r == 'o') return ParseRadix(s.substr(2), 8);
    return std::nullopt;
  }
  std::string clean(s);
  if (!clean.empty() && clean[0] == '+') clean.erase(0, 1);
  if (clean.empty()) return std::nullopt;
  for (char& c : clean) {
    if (c == 'd' || c == 'D') c = 'E';  // VB's double exponent letter
    const bool ok = (c >= '0' && c <= '9') || c == '.' || c == 'e' ||
                    c == 'E' || c == '-' || c == '+';
    if (!ok) return std::nullopt;
  }
  double value = 0;
  auto [ptr, ec] =
      std::from_chars(clean.data(), clean.data() + clean.size(), value);
  if (ec != std::errc() || ptr != clean.data() + clean.size()) {
    return std::nullopt;
  }
  return value;
}

std::string FormatDouble(double d) {
  if (d == 0) return "0";
  if (std::isnan(d)) return "NaN";
  if (std::isinf(d)) return d > 0 ? "Infinity" : "-Infinity";
  return fmt::format("{:.15G}", d);
}

bool IsNumeric(const Variant& v) {
  if (v.IsEmpty() || v.IsNumberType()) return v.type() != VarType::kDate;
  if (const std::string* s = v.AsString()) return ParseNumber(*s).has_value();
  return false;
}

std::optional<int> Compare(const Variant& a, const Variant& b,
                           text::CompareMode mode) {
  if (a.IsNull() || b.IsNull()) return std::nullopt;
  if (a.IsObject() || b.IsObject() || a.IsArray() || b.IsArray()) {
    Raise(err::kTypeMismatch);
  }
  const std::string* sa = a.AsString();
  const std::string* sb = b.AsString();
  if (sa && sb) return text::Compare(*sa, *sb, mode);
  if (sa && b.IsEmpty()) return text::Compare(*sa, "", mode);
  if (sb && a.IsEmpty()) return text::Compare("", *sb, mode);
  double da, db;
  if (sa || sb) {
    // A number against a string: numeric when the string is a number,
    // otherwise every number sorts before every string.
    const auto parsed = ParseNumber(sa ? *sa : *sb);
    if (!parsed) return sa ? 1 : -1;
    da = sa ? *parsed : a.ToDouble();
    db = sb ? *parsed : b.ToDouble();
  } else {
    da = a.ToDouble();
    db = b.ToDouble();
  }
  return da < db ? -1 : (da > db ? 1 : 0);
}

std::optional<bool> Equal(const Variant& a, const Variant& b,
                          text::CompareMode mode) {
  const auto c = Compare(a, b, mode);
  if (!c) return std::nullopt;
  return *c == 0;
}

}  // namespace qv
