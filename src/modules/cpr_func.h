// CPRFunc_t_ holds the naming rules of projects and module files. A project
// is a folder named "<project>.qv3"; each module's data in it is the file
// "<instance>_<code>.qv3", where the module code follows the last "_".
// The rules are plain string rules over the path naming of
// platform::FileSystem, so both `\` and `/` separate path levels and the
// paths need not exist. The class holds no state.
// Threads: the object holds no state and may be called from any thread (file-
// system calls go through platform::FileSystem::Current()).
#ifndef QVGLOBAL_MODULES_CPR_FUNC_H_
#define QVGLOBAL_MODULES_CPR_FUNC_H_

#include <string>

#include "com/object.h"

namespace qv {

class CPRFunc_t_ : public Dispatchable<CPRFunc_t_> {
 public:
  // The module code of a module file: the part of the base name after the
  // last "_". Raises object error 1000 when the base name has no "_".
  std::string FileNameToModul(const std::string& sFilename) const;
  // The module instance name: the base name before the last "_". Raises
  // object error 1000 when the base name has no "_".
  std::string FileNameToModulName(const std::string& sFilename) const;
  // "<sModulname>_<sModul>.qv3", without path and without checks.
  std::string ModulToFileName(const std::string& sModulname,
                              const std::string& sModul) const;
  // The project name of a project folder: its base name.
  std::string PathToProjName(const std::string& sProjPath) const;
  // True when `sPath` ends in ".qv3" and its parent folder does not.
  bool IsPathProjectFolder(const std::string& sPath) const;
  // The folder of project `sProjName` inside `sPath`.
  std::string ProjNameToPath(const std::string& sPath,
                             const std::string& sProjName) const;
  // True when the extension of `sFilename` is "qv3" (letter case ignored).
  bool IsQvFile(const std::string& sFilename) const;

  static ClassInfo BuildClassInfo();
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_CPR_FUNC_H_
