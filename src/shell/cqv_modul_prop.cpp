#include "shell/cqv_modul_prop.h"

#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "messages/app_context.h"
#include "modules/cpr_func.h"
#include "modules/cqv_modul_defs.h"
#include "platform/file_system.h"
#include "shell/cqv_globals.h"
#include "shell/internal/host_collection.h"

namespace qv {
namespace {

using platform::FileSystem;

// Where a module message goes.
struct Receiver {
  QvModul_t_ modul;
  std::string folder;
  std::string instance;
};

}  // namespace

CQvModulProp::CQvModulProp() = default;
CQvModulProp::~CQvModulProp() = default;

std::shared_ptr<CQvGlobals> CQvModulProp::QvGlobals() {
  if (!globals_) globals_ = std::make_shared<CQvGlobals>();
  return globals_;
}

CPRFunc_t_& CQvModulProp::PrFunc() {
  if (!pr_func_) pr_func_ = std::make_shared<CPRFunc_t_>();
  return *pr_func_;
}

CQvModulDefs& CQvModulProp::ModulDefs() {
  if (!modul_defs_) modul_defs_ = std::make_shared<CQvModulDefs>();
  return *modul_defs_;
}

std::string CQvModulProp::Projektname() {
  return PrFunc().PathToProjName(projekt_pfad_);
}

std::string CQvModulProp::FullModulPath() {
  return FileSystem::BuildPath(projekt_pfad_,
                               PrFunc().ModulToFileName(modulname_, modul_));
}

std::string CQvModulProp::HelpFile() {
  const ObjectPtr app = host::GetObject(form_, "GetApp");
  const std::string file =
      FileSystem::GetFileName(app->Get("HelpFile").ToString());
  const ObjectPtr start = host::Require(QvGlobals()->GetStartApp());
  return FileSystem::BuildPath(start->Get("Path").ToString(), file);
}

ObjectPtr CQvModulProp::GetActiveBar() {
  if (!form_) return nullptr;
  const Variant bar = form_->Call("GetActiveBar");
  return bar.IsEmpty() ? nullptr : bar.ToObject();
}

int32_t CQvModulProp::HtmlHelpHwnd() {
  QvGlobals();  // the main window is known while a global object lives
  return AppContext::Current()->MainWindowHandle();
}

bool CQvModulProp::SendQvModulMsg(const Variant& vQvModul,
                                  ObjectPtr QvModulMsgXML,
                                  const std::string& sModulname) {
  const VarType type = vQvModul.type();
  if (type != VarType::kString && type != VarType::kInteger &&
      type != VarType::kLong) {
    throw Error::Object1000(
        "Der Parameter QvModul muss vom Type String oder QvModul_t_ sein");
  }
  Receiver to;
  if (type == VarType::kString) {
    if (!sModulname.empty()) {
      throw Error::Object1000(
          "Wenn im Parameter vQvModul ein Pfad angegeben wurde, dann muss der "
          "Parameter sModulName empty sein.");
    }
    const std::string path = vQvModul.ToString();
    to = {ModulDefs().StrToModul(PrFunc().FileNameToModul(path)),
          FileSystem::GetParentFolderName(path),
          PrFunc().FileNameToModulName(path)};
  } else {
    to = {static_cast<QvModul_t_>(vQvModul.ToLong()), projekt_pfad_,
          sModulname.empty() ? Projektname() : sModulname};
  }
  const std::string sender = FileSystem::BuildPath(
      projekt_pfad_,
      ModulDefs().BuildDBName(modulname_, ModulDefs().StrToModul(modul_)));
  const std::string code = ModulDefs().GetExtension(to.modul);
  const ObjectPtr app = host::Require(QvGlobals()->GetStartApp());
  return app
      ->Call("SendQvModulMsg",
             {QvModulMsgXML, sender, to.folder, code, to.instance})
      .ToBoolean();
}

void CQvModulProp::SendABToolClick(const std::string& sToolname) {
  if (form_) form_->Call("ReceiveABToolClick", {sToolname});
}

std::string CQvModulProp::Bearbeiterpfad() const {
  throw Error::Object1000(
      "CQvModulProp: Die Methode Bearbeiterpfad wird nicht mehr unterstützt");
}

void CQvModulProp::set_Bearbeiterpfad(const std::string&) { Bearbeiterpfad(); }

ClassInfo CQvModulProp::BuildClassInfo() {
  using T = CQvModulProp;
  return ClassBuilder<T>("CQvModulProp")
      .Set("frmMDIChild", &T::set_frmMDIChild)
      .Get("frmMDIChild", &T::frmMDIChild)
      .Get("QvGlobals", &T::QvGlobals)
      .Let("Modul", &T::set_Modul)
      .Get("Modul", [](T& self) { return self.Modul(); })
      .Let("ProjektPfad", &T::set_ProjektPfad)
      .Get("ProjektPfad", [](T& self) { return self.ProjektPfad(); })
      .Get("Projektname", &T::Projektname)
      .Let("Modulname", &T::set_Modulname)
      .Get("Modulname", [](T& self) { return self.Modulname(); })
      .Get("FullModulPath", &T::FullModulPath)
      .Let("MDIChildCaption", &T::set_MDIChildCaption)
      .Get("MDIChildCaption", [](T& self) { return self.MDIChildCaption(); })
      .Let("Flags", &T::set_Flags)
      .Get("Flags", &T::Flags)
      .Get("QvLanguage", &T::QvLanguage)
      .Let("QvLanguage", &T::set_QvLanguage)
      .Get("HelpFile", &T::HelpFile)
      .Method("GetActiveBar", &T::GetActiveBar)
      .Method("SetABToolEnabled", &T::SetABToolEnabled)
      .Method("GetABToolEnabled", &T::GetABToolEnabled)
      .Method("ActivebarTrackPopup", &T::ActivebarTrackPopup)
      .Method("ActivebarShowToolBar", &T::ActivebarShowToolBar)
      .Method("ABCopyPicture", &T::ABCopyPicture)
      .Get("HtmlHelpHwnd", &T::HtmlHelpHwnd)
      .Method("SendQvModulMsg", &T::SendQvModulMsg, {Variant("")})
      .Method("SendABToolClick", &T::SendABToolClick)
      .Let("Bearbeiterpfad", &T::set_Bearbeiterpfad)
      .Get("Bearbeiterpfad", &T::Bearbeiterpfad)
      .Build();
}

QV_REGISTER_CLASS(CQvModulProp);

}  // namespace qv
