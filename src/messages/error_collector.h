// ErrorCollector receives the errors that the library catches instead of
// raising them to a caller: a failure while building per-thread state (the
// module table) has no caller to go to. It keeps, per thread, the last error
// reported and how many were reported since the last Clear, so that the host
// can read them. It prints nothing and writes no log.
// Threads: the collected errors are per thread; no locks are taken.
#ifndef QVGLOBAL_MESSAGES_ERROR_COLLECTOR_H_
#define QVGLOBAL_MESSAGES_ERROR_COLLECTOR_H_

#include <cstddef>
#include <optional>

#include "com/error.h"

namespace qv {

class ErrorCollector {
 public:
  ErrorCollector() = delete;

  // Records `error` as this thread's last error.
  static void Report(const Error& error);
  // This thread's last reported error, if any since the last Clear.
  static std::optional<Error> LastError();
  // How many errors this thread reported since the last Clear.
  static size_t Count();
  // Forgets this thread's errors.
  static void Clear();
};

}  // namespace qv

#endif  // QVGLOBAL_MESSAGES_ERROR_COLLECTOR_H_
