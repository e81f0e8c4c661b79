#include "messages/error_collector.h"

namespace qv {
namespace {

struct CollectedErrors {
  std::optional<Error> last;
  size_t count = 0;
};

CollectedErrors& ThisThread() {
  thread_local CollectedErrors errors;
  return errors;
}

}  // namespace

void ErrorCollector::Report(const Error& error) {
  CollectedErrors& errors = ThisThread();
  errors.last = error;
  ++errors.count;
}

std::optional<Error> ErrorCollector::LastError() { return ThisThread().last; }

size_t ErrorCollector::Count() { return ThisThread().count; }

void ErrorCollector::Clear() { ThisThread() = CollectedErrors(); }

}  // namespace qv
