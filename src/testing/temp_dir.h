// TempDir is a test helper: a fresh, empty directory under the system's
// temporary folder that is removed with everything in it when the object
// goes. It owns the directory.
#ifndef QVGLOBAL_TESTING_TEMP_DIR_H_
#define QVGLOBAL_TESTING_TEMP_DIR_H_

#include <string>
#include <string_view>

namespace qv::testing {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // The directory's absolute path, without a trailing separator.
  const std::string& path() const { return path_; }
  // The path of `name` inside the directory (the file is not created).
  std::string File(std::string_view name) const;

 private:
  std::string path_;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_TEMP_DIR_H_
