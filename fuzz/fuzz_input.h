// Shared helpers of the fuzz targets: the input as text, and the rule that
// an Error (the library's answer to bad input) is a valid outcome while any
// other exception or a crash is a finding.
#ifndef QVGLOBAL_FUZZ_FUZZ_INPUT_H_
#define QVGLOBAL_FUZZ_FUZZ_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "com/error.h"

namespace qv::fuzz {

inline std::string_view AsText(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Aborts (a finding for libFuzzer) with a message when `ok` is false.
inline void Require(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "fuzz invariant broken: %s\n", what);
    std::abort();
  }
}

// Runs `body`; qv::Error is the expected answer to bad input.
template <class Body>
void ExpectOnlyErrors(Body&& body) {
  try {
    body();
  } catch (const qv::Error&) {
  }
}

}  // namespace qv::fuzz

#endif  // QVGLOBAL_FUZZ_FUZZ_INPUT_H_
