// The enumerations of CQvConnection: the age of a table against the version
// a caller expects, and the error numbers the connection raises. Connection
// errors carry the plain enumeration value as their number and
// "CQvConnection.<method>" as their source.
#ifndef QVGLOBAL_DATA_QV_CONNECTION_ERROR_H_
#define QVGLOBAL_DATA_QV_CONNECTION_ERROR_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "com/error.h"

namespace qv {

enum QvTableAge : int32_t {
  QvTableAgeOlder = 0,
  QvTableAgeCorrect = 1,
  QvTableAgeNewer = 2,
};

enum QvConnectionError : int32_t {
  QvConnectionErrorAlreadyReleased = 0,
  QvConnectionErrorParentTableNotFound = 1,
  QvConnectionErrorUnknownFieldType = 2,
  QvConnectionErrorOpenToConvert = 3,
  QvConnectionErrorAddTable = 4,
  QvConnectionErrorSetChild = 5,
  QvConnectionErrorDelChild = 6,
};

// The error `number` raised by CQvConnection's member `method`.
Error ConnectionError(QvConnectionError number, std::string_view method,
                      std::string description);

}  // namespace qv

#endif  // QVGLOBAL_DATA_QV_CONNECTION_ERROR_H_
