// QvPath is the path service of the suite's central library: it reads the
// suite-wide settings file 'enviroment.asc' and tells where the global
// catalogue folder is and whether that information is usable, and which
// folder is the suite's base folder (under which the editors' folders lie).
//
// The file is plain text, one "key = value" per line; blank lines and lines
// starting with ';' or '#' are ignored, keys compare without regard to
// letter case and blanks around keys and values are dropped. The key
// "CatalogPath" names the catalogue folder, the key "BasePath" the base
// folder; without "BasePath" the base folder is the "qv-software" folder of
// the common application-data folder. Text that is not valid UTF-8 is
// read as Windows-1252.
//
// The file is looked for at the path in the environment variable
// QV_ENVIROMENT_ASC, else as qv-software/enviroment.asc in the common
// application-data folder. The file is read once, when the object is made.
//
// Threads: an object is immutable after construction and may be shared.
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
  // The suite's base folder (see above); neither tested nor created.
  const std::string& GetBasePath() const { return base_path_; }
  const std::string& file() const { return file_; }

 private:
  void Load();
  void ReadSettings();

  std::string file_;
  std::string catalog_path_;
  std::string base_path_;
  int32_t state_ = kEnviromentAscNotValid;
};

}  // namespace qv::central

#endif  // QVGLOBAL_CENTRAL_QV_PATH_H_
