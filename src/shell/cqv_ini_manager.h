// CqvIniManager reads and writes one INI file, named beforehand in IniFile,
// for the suite's modules and for CControlIniManager: strings, 32-bit
// integers and Booleans (stored as -1 and 0; any non-zero value reads as
// true), and deletes keys and whole sections. The file work is done by
// platform::Profile, which behaves like the Windows profile functions and
// replaces the file atomically under a lock.
//
// Every member but IniFile first checks, in this order, that IniFile, the
// section and the key are not empty; the first failed check raises object
// error 1000 (-2147220504) with the description "qvIniManager.dll: "
// followed by "Ini-File noch nicht angegeben", "Sektionsnamen nicht
// angegeben" or "Schlüsselnamen nicht angegeben", and the file is not
// touched. A failed write or delete only returns false; reads of a missing
// file, section or key give the default. Optional arguments default to "",
// 0 and false.
//
// The object holds only the file name; it opens nothing between calls.
// Threads: an object belongs to one thread at a time; objects on different
// threads may use the same file.
#ifndef QVGLOBAL_SHELL_CQV_INI_MANAGER_H_
#define QVGLOBAL_SHELL_CQV_INI_MANAGER_H_

#include <cstdint>
#include <string>

#include "com/object.h"

namespace qv {

class CqvIniManager : public Dispatchable<CqvIniManager> {
 public:
  const std::string& IniFile() const { return m_sIniFile; }
  void SetIniFile(const std::string& sIniFile) { m_sIniFile = sIniFile; }

  bool WriteString(const std::string& sSection, const std::string& sKey,
                   const std::string& sValue);
  // At most 1,023 characters of the value.
  std::string GetString(const std::string& sSection, const std::string& sKey,
                        const std::string& sDefault = "");
  bool WriteLong(const std::string& sSection, const std::string& sKey,
                 int32_t lValue);
  int32_t GetLong(const std::string& sSection, const std::string& sKey,
                  int32_t lDefault = 0);
  bool DeleteSection(const std::string& sSection);
  bool DeleteKey(const std::string& sSection, const std::string& sKey);
  bool WriteBoolean(const std::string& sSection, const std::string& sKey,
                    bool bValue);
  bool GetBoolean(const std::string& sSection, const std::string& sKey,
                  bool bDefault = false);

  static ClassInfo BuildClassInfo();

 private:
  void CheckArguments(const std::string& sSection,
                      const std::string& sKey) const;

  std::string m_sIniFile;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_INI_MANAGER_H_
