// qv::Variant is the automation value: Empty, Null, Boolean, Integer (16-bit),
// Long (32-bit), Single, Double, Date, String, Object (a reference or
// Nothing) or Array. It has value semantics: copying a variant copies its
// array, while an object is shared (it is a reference). The conversions and
// comparisons follow the automation rules that scripting hosts rely on.
// Threads: a Variant is a value: one variant is used by one thread at a time. A
// variant holding an object shares that object, which follows the object's own
// rule.
#ifndef QVGLOBAL_COM_VARIANT_H_
#define QVGLOBAL_COM_VARIANT_H_

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "com/text.h"

namespace qv {

class Object;
class SafeArray;
using ObjectPtr = std::shared_ptr<Object>;

// The automation type codes.
enum class VarType : uint16_t {
  kEmpty = 0,
  kNull = 1,
  kInteger = 2,
  kLong = 3,
  kSingle = 4,
  kDouble = 5,
  kDate = 7,
  kString = 8,
  kObject = 9,
  kBoolean = 11,
  kArray = 0x200C,  // array of variants
};

// An automation date: days since 1899-12-30, the fraction being the time.
struct Date {
  double serial = 0;
  bool operator==(const Date&) const = default;
};

struct NullValue {
  bool operator==(const NullValue&) const = default;
};
inline constexpr NullValue kNull{};

class Variant {
 public:
  Variant() = default;  // Empty
  Variant(NullValue) : value_(NullValue{}) {}
  Variant(bool b) : value_(b) {}
  Variant(int16_t i) : value_(i) {}
  Variant(int32_t l) : value_(l) {}
  Variant(float f) : value_(f) {}
  Variant(double d) : value_(d) {}
  Variant(Date d) : value_(d) {}
  Variant(const std::string& s) : value_(s) {}
  Variant(std::string&& s) : value_(std::move(s)) {}
  Variant(std::string_view s) : value_(std::string(s)) {}
  Variant(const char* s) : value_(std::string(s)) {}
  Variant(ObjectPtr o) : value_(std::move(o)) {}
  Variant(std::nullptr_t) : value_(ObjectPtr()) {}  // Nothing
  Variant(SafeArray a);
  // Other object types convert through their shared_ptr.
  template <class T>
  requires std::is_base_of_v<Object, T> Variant(std::shared_ptr<T> o)
      : value_(ObjectPtr(std::move(o))) {}

  Variant(const Variant& other);
  // Defined out of line: g++ 12 misreads the inlined move of the string
  // alternative as a read of uninitialised memory (-Wmaybe-uninitialized).
  Variant(Variant&&) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept {
    // Move out first: `other` may be an element of the array being replaced.
    Storage moved = std::move(other.value_);
    value_ = std::move(moved);
    return *this;
  }
  ~Variant();

  VarType type() const;
  bool IsEmpty() const { return value_.index() == 0; }
  bool IsNull() const { return value_.index() == 1; }
  bool IsString() const { return std::holds_alternative<std::string>(value_); }
  bool IsObject() const { return std::holds_alternative<ObjectPtr>(value_); }
  bool IsArray() const;
  // True for Boolean, Integer, Long, Single, Double and Date.
  bool IsNumberType() const;
  // Object that is Nothing.
  bool IsNothing() const;

  // Conversions with the automation rules. Null raises 94, impossible
  // conversions raise 13, out-of-range numbers raise 6.
  std::string ToString() const;
  bool ToBoolean() const;
  int16_t ToInteger() const;
  int32_t ToLong() const;
  float ToSingle() const;
  double ToDouble() const;
  Date ToDate() const;
  // Nothing is a valid object; any other non-object raises 13.
  ObjectPtr ToObject() const;
  template <class T>
  std::shared_ptr<T> ToObjectAs() const {
    return std::dynamic_pointer_cast<T>(ToObject());
  }
  // The array held; raises 13 when this is not an array.
  const SafeArray& ToArray() const;
  SafeArray& ToArray();

  // Direct access to the stored alternative (nullptr when not held).
  const std::string* AsString() const {
    return std::get_if<std::string>(&value_);
  }
  // Makes this the string `text`, reusing the buffer of a string held now
  // (block reads refill the same slots row after row).
  void AssignText(std::string_view text) {
    if (std::string* s = std::get_if<std::string>(&value_)) {
      s->assign(text);
    } else {
      *this = Variant(text);
    }
  }

  // Exact identity of type and value (arrays element by element, objects
  // by reference). This is not the automation `=`; see Equal below.
  bool operator==(const Variant& other) const;

  // A short text for diagnostics: "Empty", "Null", "Long 5", "String \"x\"".
  std::string Describe() const;

 private:
  // The array lives behind a pointer so that Variant can hold arrays of
  // variants; the copy operations copy it deeply, so it is never shared.
  struct ArrayBox {
    std::shared_ptr<SafeArray> array;
  };
  using Storage =
      std::variant<std::monostate, NullValue, bool, int16_t, int32_t, float,
                   double, Date, std::string, ObjectPtr, ArrayBox>;
  Storage value_;
};

// Writes Describe(), so that test failures and diagnostics show the value.
std::ostream& operator<<(std::ostream& os, const Variant& v);

// The automation `=`: std::nullopt stands for Null (either side Null).
// Empty counts as 0 against numbers and "" against strings; a number against
// a string that looks numeric compares as numbers, otherwise the number is
// less than the string. Objects and arrays raise 13.
std::optional<bool> Equal(const Variant& a, const Variant& b,
                          text::CompareMode mode = text::CompareMode::kBinary);
// Three-way automation comparison (-1, 0, 1); std::nullopt for Null.
std::optional<int> Compare(const Variant& a, const Variant& b,
                           text::CompareMode mode = text::CompareMode::kBinary);

// IsNumeric: numbers, Empty, and strings that parse as a number.
bool IsNumeric(const Variant& v);

// Parses invariant numeric text ("1.5", " -17 ", "1E3", "&H1F"); nullopt when
// the text is not a number.
std::optional<double> ParseNumber(std::string_view text);

// Formats a double the way automation prints it: up to 15 significant
// digits, invariant point ("1.5", "0.1", "1E+20").
std::string FormatDouble(double d);

}  // namespace qv

#endif  // QVGLOBAL_COM_VARIANT_H_
