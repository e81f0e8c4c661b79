// CQvGlobals is the object that the host application and every module of
// the suite share. All objects of one thread see one state: the main window
// (frmMDIParentRef, set by the host), the one database container, the one
// record clipboard, the event companion, the tool-tip level, the editor's
// short and long names and the user-interface language. The first object
// of a thread creates the container, clipboard, path service and event
// companion (and sets the tool-tip level to 1); the last one releases them
// and the main window; names and language stay. While objects live, the
// clipboard is the one that record sets reach through CurrentClipboard(),
// and the message code reads language, help file and main window handle
// from them (messages/app_context.h).
//
// Toolbar and window requests are forwarded to the main window: the member
// of the same name (GetStartApp calls "GetApp") is called by name with the
// same arguments, ModulSelected's first three by reference, and its result
// returned; without a main window nothing is called and the result is
// Nothing, False or "". Errors of the main window pass unchanged.
//
// Errors: object error 1000 (no source) for an unknown language text or
// value, for the retired members, and for a folder of qv.ini that cannot be
// created; conversions of the main window's results raise 13.
//
// Ownership: the thread's state owns container, clipboard and companion;
// a caller that keeps one of them keeps it alive beyond the last object.
// Threads: objects are per thread and must be created, used and released on
// one thread; the library takes no lock for them.
#ifndef QVGLOBAL_SHELL_CQV_GLOBALS_H_
#define QVGLOBAL_SHELL_CQV_GLOBALS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "central/qv_language.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv {

class CQvClipboard;
class CQvComEvents_t_;
class CQvDbContainer;
struct GlobalState;

class CQvGlobals : public Dispatchable<CQvGlobals> {
 public:
  CQvGlobals();
  ~CQvGlobals() override;
  CQvGlobals(const CQvGlobals&) = delete;
  CQvGlobals& operator=(const CQvGlobals&) = delete;

  // The main window; the reference is taken as the host hands it in.
  void set_frmMDIParentRef(ObjectPtr& frm);
  ObjectPtr frmMDIParentRef() const;
  std::shared_ptr<CQvDbContainer> QvDbContainer() const;
  std::shared_ptr<CQvClipboard> QvClipboard() const;
  int16_t ToolTipLevel() const;
  void set_ToolTipLevel(int16_t level);
  std::string KurzBezBearbeiter() const;
  void set_KurzBezBearbeiter(const std::string& name);
  std::string LangBezBearbeiter() const;
  void set_LangBezBearbeiter(const std::string& name);

  void SetABToolEnabled(const std::string& sToolname, bool bEnabled);
  bool GetABToolEnabled(const std::string& sToolname);
  bool IsFormForCurrentActiveBar(ObjectPtr frmMDIChildActiveBar);
  void ActivebarTrackPopup(const std::string& sBandname);
  ObjectPtr GetMDIParentAB();
  bool ModulSelected(std::string& sModul, std::string& sProjectPfad,
                     std::string& sModulname, const std::string& sKatalog);
  void SetEnabledForms(bool bEnabled);
  // Retired: raises object error 1000.
  void set_QvIntelliSense(bool enabled);
  bool QvIntelliSense();

  // <common application data>/qv-software/Orbis/qv.ini; the two folders
  // (and the common application-data folder) are created when missing,
  // the file is neither created nor tested.
  std::string GetQVIniFile();
  // GetBearbeiterPfad joined with "DX.INI".
  std::string GetDXIniFile();
  std::string CurHelpFile();
  ObjectPtr GetMDIParentComAB();
  // The host application object (the main window's "GetApp").
  ObjectPtr GetStartApp();
  // The folder "<KurzBezBearbeiter>.qv3" in the path service's base folder.
  std::string GetBearbeiterPfad();
  ObjectPtr GetQvDXImageList();
  ObjectPtr GetQvDXPicture(const std::string& sModul);
  ObjectPtr GetActiveMDIChildForm();
  std::shared_ptr<CQvComEvents_t_> QvComEvents() const;

  QvLanguage_t_ QvLanguage() const;
  void set_QvLanguage(QvLanguage_t_ language);
  // "de" and "en", letter case ignored.
  QvLanguage_t_ StrToQvLanguage(const std::string& sName) const;
  std::string QvLanguageToStr(QvLanguage_t_ QvLanguage) const;
  bool IsLanguageStrOk(const std::string& sName) const;
  bool IsQvLanguageOk(QvLanguage_t_ QvLanguage) const;

  // Passes a key event to the main window's toolbar ("OnKeyDown" /
  // "OnKeyUp" with the key code by reference and the keyboard's shift
  // state); nothing without a toolbar. lParam is not used.
  void ABOnKeyDown(int32_t wParam, int32_t lParam);
  void ABOnKeyUp(int32_t wParam, int32_t lParam);

  static ClassInfo BuildClassInfo();

 private:
  // Raises object error 1000 for a member that is no longer supported.
  [[noreturn]] static void RaiseNotSupported(std::string_view label);
  // The main window's member `member` called with `args`; Empty without a
  // main window.
  Variant Forward(std::string_view member, std::vector<Variant> args = {});
  void ForwardKey(std::string_view event, int32_t wParam);

  GlobalState* state_;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_GLOBALS_H_
