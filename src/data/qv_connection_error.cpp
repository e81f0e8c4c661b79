#include "data/qv_connection_error.h"

#include <utility>

namespace qv {

Error ConnectionError(QvConnectionError number, std::string_view method,
                      std::string description) {
  return Error(number, "CQvConnection." + std::string(method),
               std::move(description));
}

}  // namespace qv
