// CQvModulDefs answers the questions of client modules about the module
// table (modul_table.h): a module's record, enumeration value, flags,
// descriptions, catalogues, calculation class, file extension and database
// file name. It holds no data of its own: all objects of a thread share the
// thread's table, which the first of them builds. Modules are looked up by
// code, letter case ignored, scanning the table in order; a code that is not
// there raises object error 1000 with the member's not-found text.
// Threads: an object is used by one thread at a time; it reads the module table
// of its thread (modul_table.h).
#ifndef QVGLOBAL_MODULES_CQV_MODUL_DEFS_H_
#define QVGLOBAL_MODULES_CQV_MODUL_DEFS_H_

#include <memory>
#include <string>
#include <string_view>

#include "com/dictionary.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/variant.h"
#include "modules/cpr_func.h"
#include "modules/qv_modul_def.h"

namespace qv {

class CQvModulDefs : public Dispatchable<CQvModulDefs> {
 public:
  // Builds this thread's module table if it is not built yet.
  CQvModulDefs();

  // The whole table, zero-based: the records themselves, not copies.
  SafeArray GetArrayQvModulDefs() const;
  std::shared_ptr<CQvModulDef> GetQvModulDef(const std::string& sModul) const;
  QvModul_t_ StrToModul(const std::string& sModul) const;
  bool IsMultiProjectModul(const std::string& sModul) const;
  bool IsModulWithBearbeitungsstand(const std::string& sModul) const;
  bool IsModulWithBearbeitungsaenderungen(const std::string& sModul) const;
  bool IsModulToCopyFromUser(const std::string& sModul) const;
  // True when any record lists `sModul` among its modules; never raises.
  bool IsProjectDBModul(const std::string& sModul) const;
  // True when any record has the code `sModul`; never raises.
  bool IsProjectModul(const std::string& sModul) const;
  std::string GetModulDescription(const std::string& sModul) const;
  std::string GetQvSpecDesc(const std::string& sModul) const;
  // A new text-compare dictionary of every code listed in any record's
  // modules, each once, key and item alike, in first-seen order.
  std::shared_ptr<Dictionary> GetAllModulExtensions() const;
  std::string GetExtension(QvModul_t_ Modul) const;
  // The record's catalogue array (a copy).
  Variant GetCatalogs(const std::string& sModul) const;
  std::string GetRLTCalcModulClass(const std::string& sModul) const;
  bool GetND(const std::string& sModul) const;
  bool ShowPicInDX(const std::string& sModul) const;
  // The module file name of instance `sModulname` of module `sModul`.
  std::string BuildDBName(const std::string& sModulname, QvModul_t_ sModul);

  static ClassInfo BuildClassInfo();

 private:
  // The record of `sModul`; raises "CQvModulDefs-><method>: <what><sModul>'
  // nicht gefunden." when there is none.
  static const CQvModulDef& Require(std::string_view method,
                                    std::string_view what,
                                    const std::string& sModul);

  std::shared_ptr<CPRFunc_t_> pr_func_;
};

}  // namespace qv

#endif  // QVGLOBAL_MODULES_CQV_MODUL_DEFS_H_
