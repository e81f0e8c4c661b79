// Uses the installed library: finds its headers, links against it and calls
// into it. Returns 0 when the results are right.
#include <cstdio>

#include "com/error.h"

int main() {
  const qv::Error overflow = qv::Error::Runtime(6);
  if (overflow.description() != "Overflow") {
    std::fprintf(stderr, "Runtime(6): expected \"Overflow\", got \"%s\"\n",
                 overflow.description().c_str());
    return 1;
  }
  const qv::Error object_error = qv::Error::Object1000("x");
  if (object_error.number() != -2147220504) {
    std::fprintf(stderr, "Object1000: expected -2147220504, got %ld\n",
                 static_cast<long>(object_error.number()));
    return 1;
  }
  std::printf("qvglobal consumer: ok\n");
  return 0;
}
