#include "com/error.h"

#include <utility>

namespace qv {

Error::Error(int32_t number, std::string source, std::string description)
    : std::runtime_error(description),
      number_(number),
      source_(std::move(source)),
      description_(std::move(description)) {}

Error Error::Runtime(int32_t number) {
  return Error(number, "", RuntimeErrorText(number));
}

Error Error::Object1000(std::string description) {
  return Error(err::kObjectError1000, "", std::move(description));
}

Error Error::WithDescriptionPrefix(const std::string& prefix) const {
  return Error(number_, source_, prefix + description_);
}

Error Error::WithSourcePrefix(const std::string& prefix) const {
  return Error(number_, prefix + source_, description_);
}

const char* RuntimeErrorText(int32_t number) {
  switch (number) {
    case err::kInvalidProcedureCall:
      return "Invalid procedure call or argument";
    case err::kOverflow:
      return "Overflow";
    case err::kSubscriptOutOfRange:
      return "Subscript out of range";
    case err::kTypeMismatch:
      return "Type mismatch";
    case err::kFileNotFound:
      return "File not found";
    case err::kFileAlreadyExists:
      return "File already exists";
    case err::kPermissionDenied:
      return "Permission denied";
    case err::kPathFileAccessError:
      return "Path/File access error";
    case err::kPathNotFound:
      return "Path not found";
    case err::kObjectVariableNotSet:
      return "Object variable or With block variable not set";
    case err::kInvalidUseOfNull:
      return "Invalid use of Null";
    case err::kCantCreateObject:
      return "ActiveX component can't create object";
    case err::kObjectDoesntSupport:
      return "Object doesn't support this property or method";
    case err::kWrongNumberOfArguments:
      return "Wrong number of arguments or invalid property assignment";
    case err::kKeyAlreadyAssociated:
      return "This key is already associated with an element of this "
             "collection";
    case err::kElementNotFound:
      return "Element not found";
    default:
      return "";
  }
}

}  // namespace qv
