// CQvModulProp is the context of one open module window: which module it
// is (Modul, a module code), which project folder and module instance it
// works on, its form, caption, language and free flags. It names the
// project and the module file, finds the module's help file in the folder
// of the suite's start application, runs the module's toolbar operations on
// the form's ActiveBar and sends messages to other modules through the host
// application.
//
// Host objects are reached by member name: the form (frmMDIChild:
// "GetActiveBar", "GetApp", "ReceiveABToolClick"), the host application
// ("HelpFile", "Path", "SendQvModulMsg"), the ActiveBar ("Bands", "Tools",
// "RecalcLayout", "Refresh") with its bands ("Visible", "DockingArea",
// "Width", "Height", "left", "top", "TrackPopup", "Tools") and tools
// ("Name", "Enabled", "Width", "Caption", "GetPicture", "SetPicture");
// collections are walked through "Count" and "Item" (shell/internal/
// host_collection.h). Band positions and sizes are screen pixels, as the
// display service reports them.
//
// Errors: SetABToolEnabled, GetABToolEnabled, ActivebarTrackPopup and
// ActivebarShowToolBar put "CQvModulProp-><member>: " in front of the
// description of any error (number and source unchanged), an unknown tool
// or band included. SendQvModulMsg raises object error 1000 for a wrong
// receiver argument; Bearbeiterpfad raises object error 1000 (retired).
// Operations that need a form, toolbar or application that is not there
// raise 91. Errors of the module table and of the host pass unchanged.
//
// Ownership: the context holds its form and, from its first use, a global
// object of its own (so the thread's shared state lives at least as long).
// Threads: an object is used on the thread that created it.
#ifndef QVGLOBAL_SHELL_CQV_MODUL_PROP_H_
#define QVGLOBAL_SHELL_CQV_MODUL_PROP_H_

#include <cstdint>
#include <memory>
#include <string>

#include "central/qv_language.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv {

class CPRFunc_t_;
class CQvGlobals;
class CQvModulDefs;

class CQvModulProp : public Dispatchable<CQvModulProp> {
 public:
  CQvModulProp();
  ~CQvModulProp() override;

  void set_frmMDIChild(ObjectPtr form) { form_ = std::move(form); }
  ObjectPtr frmMDIChild() const { return form_; }
  std::shared_ptr<CQvGlobals> QvGlobals();
  void set_Modul(const std::string& code) { modul_ = code; }
  const std::string& Modul() const { return modul_; }
  void set_ProjektPfad(const std::string& path) { projekt_pfad_ = path; }
  const std::string& ProjektPfad() const { return projekt_pfad_; }
  // The project's name: the base name of the project folder.
  std::string Projektname();
  void set_Modulname(const std::string& name) { modulname_ = name; }
  const std::string& Modulname() const { return modulname_; }
  // The module file "<Modulname>_<Modul>.qv3" in the project folder.
  std::string FullModulPath();
  void set_MDIChildCaption(const std::string& caption) { caption_ = caption; }
  const std::string& MDIChildCaption() const { return caption_; }
  void set_Flags(int32_t flags) { flags_ = flags; }
  int32_t Flags() const { return flags_; }
  QvLanguage_t_ QvLanguage() const { return language_; }
  void set_QvLanguage(QvLanguage_t_ language) { language_ = language; }
  // The file name of the form's application's help file, in the folder of
  // the start application.
  std::string HelpFile();

  // The form's ActiveBar; Nothing without a form.
  ObjectPtr GetActiveBar();
  void SetABToolEnabled(const std::string& sToolID, bool bEnabled);
  bool GetABToolEnabled(const std::string& sToolID);
  void ActivebarTrackPopup(const std::string& sBandname);
  // Shows a band as a floating toolbar centred on the mouse, kept on the
  // screen, and moves the mouse onto its middle; a visible docked band is
  // left as it is.
  void ActivebarShowToolBar(const std::string& sBandname);
  // Every tool named sDestToolname (in every band and in the toolbar's own
  // tools, letter case ignored) gets the picture (slot 0) and caption of
  // the tool sSrcToolname; then the toolbar is refreshed.
  void ABCopyPicture(const std::string& sSrcToolname,
                     const std::string& sDestToolname);
  // The main window's handle, to which help windows are attached; 0
  // without a main window.
  int32_t HtmlHelpHwnd();
  // Sends the XML message to another module through the host
  // application's "SendQvModulMsg"(document, sender's module file,
  // receiver's project folder, receiver's module code, receiver's instance
  // name). vQvModul is the receiver's module value (a number: a module of
  // this project, instance sModulname or else the project's name) or the
  // full path of its module file (then sModulname must be "").
  bool SendQvModulMsg(const Variant& vQvModul, ObjectPtr QvModulMsgXML,
                      const std::string& sModulname = "");
  // Passes a tool click to the form's "ReceiveABToolClick"; nothing
  // without a form.
  void SendABToolClick(const std::string& sToolname);
  // Retired: both raise object error 1000.
  std::string Bearbeiterpfad() const;
  void set_Bearbeiterpfad(const std::string& path);

  static ClassInfo BuildClassInfo();

 private:
  // Runs `op`, putting "CQvModulProp-><member>: " before any error.
  template <class Op>
  auto WithSource(const char* member, Op&& op);
  CPRFunc_t_& PrFunc();
  CQvModulDefs& ModulDefs();
  ObjectPtr RequireActiveBar();

  ObjectPtr form_;
  std::string modul_;
  std::string projekt_pfad_;
  std::string modulname_;
  std::string caption_;
  int32_t flags_ = 0;
  QvLanguage_t_ language_ = qvlNoLanguage;
  std::shared_ptr<CQvGlobals> globals_;
  std::shared_ptr<CPRFunc_t_> pr_func_;
  std::shared_ptr<CQvModulDefs> modul_defs_;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_CQV_MODUL_PROP_H_
