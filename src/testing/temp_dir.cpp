#include "testing/temp_dir.h"

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace qv::testing {

TempDir::TempDir() {
  std::string pattern =
      (std::filesystem::temp_directory_path() / "qvtest-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot create temporary directory " + pattern);
  }
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::remove_all(path_, ec);
}

std::string TempDir::File(std::string_view name) const {
  return path_ + "/" + std::string(name);
}

}  // namespace qv::testing
