// Test helpers: a file's exact bytes, read or written in one call, for
// tests that check what a write left on disk byte for byte.
#ifndef QVGLOBAL_TESTING_FILE_BYTES_H_
#define QVGLOBAL_TESTING_FILE_BYTES_H_

#include <string>

namespace qv::testing {

// The bytes of the file at `path` ("" when it cannot be read).
std::string ReadFileBytes(const std::string& path);
// Replaces the file at `path` by `bytes`, written in place.
void WriteFileBytes(const std::string& path, const std::string& bytes);

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_FILE_BYTES_H_
