// QvPath is the path service of the suite's central library: it reads the
// suite-wide settings file 'enviroment.asc' and tells where the global
// catalogue folder is and whether that information is usable.
//
// The file is plain text, one "key = value" per line; blank lines and lines
// starting with ';' or '#' are ignored, keys compare without regard to
// letter case and blanks around keys and values are dropped. The key
// "CatalogPath" names the catalogue folder. Text that is not valid UTF-8 is
// read as Windows-1252.
//
// The file is looked for at the path in the environment variable
// QV_ENVIROMENT_ASC, else as qv-software/enviroment.asc in the common
// application-data folder.
// Threads: an object is used by one thread at a time; different objects may be
// used on different threads at once. It takes no locks.
#ifndef QVGLOBAL_CENTRAL_QV_PATH_H_
#define QVGLOBAL_CENTRAL_QV_PATH_H_

#include <cstdint>
#include <string>

namespace qv::central {

class QvPath {
 public:
  enum State : int32_t {
    kValid = 0,
    kEnviromentAscNotValid = 1,  // missing, unreadable or without CatalogPath
    kPathNotValid = 2,           // the folder named in it does not exist
  };

  // Reads the file found by the rule above.
  QvPath();
  // Reads the given file.
  explicit QvPath(const std::string& enviroment_asc);

  // Where the settings file is looked for.
  static std::string DefaultFile();

  int32_t GetState() const { return state_; }
  const std::string& GetCatalogPath() const { return catalog_path_; }
  const std::string& file() const { return file_; }

 private:
  void Load();

  std::string file_;
  std::string catalog_path_;
  int32_t state_ = kEnviromentAscNotValid;
};

}  // namespace qv::central

#endif  // QVGLOBAL_CENTRAL_QV_PATH_H_
