// qv::Error is the one exception type of the library: an automation error
// with a signed 32-bit number, a source and a description. Every failure that
// reaches a caller is a qv::Error; the named constants below are the numbers
// the library raises (its own object errors and the runtime errors that pass
// through collections, conversions and dispatch).
// Threads: an Error is an immutable value; copies may go to any thread.
//
// Error-number families. Small numbers overlap between families by design
// (each keeps the numbers its callers already test for), so a caller tells
// them apart by the number together with the source:
//
//   family                  numbers                   source, raised by
//   runtime errors          5 ... 457, 32811          "" or "Class.member":
//                           (err:: below)             Variant, SafeArray,
//                           standard English texts    Collection, Dictionary,
//                                                     dispatch, FileSystem
//   QvConnectionError       0 ... 6                   "CQvConnection.<member>"
//   (data/qv_connection_error.h)                      (CQvConnection and
//                                                     its table schema work)
//   QvDbError               0 ... 8                   "CQvDBContainer.<member>"
//   (data/cqv_db_container.h)                         (CQvDbContainer)
//   object error 1000       -2147220504 (0x800403E8)  the library's own
//   (err::kObjectError1000)                           messages: module table,
//                                                     file naming, QvRecordset,
//                                                     QvDs, CQVActiveBar,
//                                                     project creation
//   object base 0x80040000  -2147221504               "CQvRecordsetTree.<m>":
//   (err::kObjectBase)                                no parent, no child
//   data source             0x80042001 ... 0x80042008  "DbConnection.<m>",
//   (datasource/db_error.h) (kBase + 1 ... + 8)       "DbCatalog.<m>",
//                                                     "QvRecordset.<m>":
//                                                     engine and catalogue
#ifndef QVGLOBAL_COM_ERROR_H_
#define QVGLOBAL_COM_ERROR_H_

#include <cstdint>
#include <stdexcept>
#include <string>

namespace qv {

namespace err {
// 0x80040000: first number of the range reserved for errors of objects.
inline constexpr int32_t kObjectBase = -2147221504;
// 0x800403E8: object-defined error 1000, the library's own messages.
inline constexpr int32_t kObjectError1000 = kObjectBase + 1000;

// Runtime errors that pass through with their usual numbers and texts.
inline constexpr int32_t kInvalidProcedureCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kFileNotFound = 53;
inline constexpr int32_t kFileAlreadyExists = 58;
inline constexpr int32_t kPermissionDenied = 70;
inline constexpr int32_t kPathFileAccessError = 75;
inline constexpr int32_t kPathNotFound = 76;
inline constexpr int32_t kObjectVariableNotSet = 91;
inline constexpr int32_t kInvalidUseOfNull = 94;
inline constexpr int32_t kCantCreateObject = 429;
inline constexpr int32_t kObjectDoesntSupport = 438;
inline constexpr int32_t kWrongNumberOfArguments = 450;
inline constexpr int32_t kKeyAlreadyAssociated = 457;
inline constexpr int32_t kElementNotFound = 32811;
}  // namespace err

class Error : public std::runtime_error {
 public:
  Error(int32_t number, std::string source, std::string description);

  // A runtime error with its standard English text and an empty source.
  static Error Runtime(int32_t number);
  // Object error 1000 with the given description and no source.
  static Error Object1000(std::string description);

  int32_t number() const { return number_; }
  const std::string& source() const { return source_; }
  const std::string& description() const { return description_; }

  // The same error with `prefix` put in front of its description.
  Error WithDescriptionPrefix(const std::string& prefix) const;
  // The same error with `prefix` put in front of its source.
  Error WithSourcePrefix(const std::string& prefix) const;

 private:
  int32_t number_;
  std::string source_;
  std::string description_;
};

// The standard English text of a runtime error number ("" when unknown).
const char* RuntimeErrorText(int32_t number);

}  // namespace qv

#endif  // QVGLOBAL_COM_ERROR_H_
