#include "shell/cqv_globals.h"

#include <utility>

#include "central/qv_path.h"
#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "data/cqv_db_container.h"
#include "modules/cpr_func.h"
#include "platform/common_app_data.h"
#include "platform/file_system.h"
#include "platform/keyboard.h"
#include "records/cqv_clipboard.h"
#include "shell/cqv_com_events.h"
#include "shell/internal/global_state.h"

namespace qv {
namespace {

using platform::FileSystem;

constexpr char kGerman[] = "de";
constexpr char kEnglish[] = "en";

// A main window's object result: Empty (a member that returned nothing)
// counts as Nothing.
ObjectPtr AsObject(const Variant& v) {
  return v.IsEmpty() ? nullptr : v.ToObject();
}

// `folder`, created when it does not exist.
std::string EnsureIniFolder(const std::string& folder) {
  const std::shared_ptr<FileSystem> fs = FileSystem::Current();
  if (fs->FolderExists(folder)) return folder;
  try {
    fs->CreateFolder(folder);
  } catch (const Error&) {
    throw Error::Object1000(
        "Kann das Verzeichnis für die qv.ini nicht erzeugen");
  }
  return folder;
}

}  // namespace

CQvGlobals::CQvGlobals() : state_(&GlobalState::OfThisThread()) {
  state_->Acquire();
}

CQvGlobals::~CQvGlobals() { state_->Release(); }

void CQvGlobals::set_frmMDIParentRef(ObjectPtr& frm) {
  state_->main_window = frm;
}
ObjectPtr CQvGlobals::frmMDIParentRef() const { return state_->main_window; }

std::shared_ptr<CQvDbContainer> CQvGlobals::QvDbContainer() const {
  return state_->container;
}
std::shared_ptr<CQvClipboard> CQvGlobals::QvClipboard() const {
  return state_->clipboard;
}

int16_t CQvGlobals::ToolTipLevel() const { return state_->tool_tip_level; }
void CQvGlobals::set_ToolTipLevel(int16_t level) {
  state_->tool_tip_level = level;
}
std::string CQvGlobals::KurzBezBearbeiter() const {
  return state_->kurz_bez_bearbeiter;
}
void CQvGlobals::set_KurzBezBearbeiter(const std::string& name) {
  state_->kurz_bez_bearbeiter = name;
}
std::string CQvGlobals::LangBezBearbeiter() const {
  return state_->lang_bez_bearbeiter;
}
void CQvGlobals::set_LangBezBearbeiter(const std::string& name) {
  state_->lang_bez_bearbeiter = name;
}

Variant CQvGlobals::Forward(std::string_view member,
                            std::vector<Variant> args) {
  return state_->CallMainWindow(member, args);
}

void CQvGlobals::SetABToolEnabled(const std::string& sToolname, bool bEnabled) {
  Forward("SetABToolEnabled", {sToolname, bEnabled});
}
bool CQvGlobals::GetABToolEnabled(const std::string& sToolname) {
  return Forward("GetABToolEnabled", {sToolname}).ToBoolean();
}
bool CQvGlobals::IsFormForCurrentActiveBar(ObjectPtr frmMDIChildActiveBar) {
  return Forward("IsFormForCurrentActiveBar", {frmMDIChildActiveBar})
      .ToBoolean();
}
void CQvGlobals::ActivebarTrackPopup(const std::string& sBandname) {
  Forward("ActivebarTrackPopup", {sBandname});
}
ObjectPtr CQvGlobals::GetMDIParentAB() {
  return AsObject(Forward("GetMDIParentAB"));
}

bool CQvGlobals::ModulSelected(std::string& sModul, std::string& sProjectPfad,
                               std::string& sModulname,
                               const std::string& sKatalog) {
  if (!state_->main_window) return false;
  Variant args[] = {sModul, sProjectPfad, sModulname, sKatalog};
  const bool selected =
      state_->CallMainWindow("ModulSelected", args).ToBoolean();
  sModul = args[0].ToString();
  sProjectPfad = args[1].ToString();
  sModulname = args[2].ToString();
  return selected;
}

void CQvGlobals::SetEnabledForms(bool bEnabled) {
  Forward("SetEnabledForms", {bEnabled});
}

void CQvGlobals::set_QvIntelliSense(bool) {
  RaiseNotSupported("Let QvIntelliSense");
}
bool CQvGlobals::QvIntelliSense() {
  return Forward("QvIntelliSense").ToBoolean();
}

std::string CQvGlobals::GetQVIniFile() {
  std::string folder = EnsureIniFolder(platform::CommonAppDataFolder());
  folder = EnsureIniFolder(FileSystem::BuildPath(folder, "qv-software"));
  folder = EnsureIniFolder(FileSystem::BuildPath(folder, "Orbis"));
  return FileSystem::BuildPath(folder, "qv.ini");
}

std::string CQvGlobals::GetDXIniFile() {
  return FileSystem::BuildPath(GetBearbeiterPfad(), "DX.INI");
}

std::string CQvGlobals::CurHelpFile() {
  return Forward("CurHelpFile").ToString();
}
ObjectPtr CQvGlobals::GetMDIParentComAB() {
  return AsObject(Forward("GetMDIParentComAB"));
}
ObjectPtr CQvGlobals::GetStartApp() { return AsObject(Forward("GetApp")); }

std::string CQvGlobals::GetBearbeiterPfad() {
  return CPRFunc_t_().ProjNameToPath(state_->path->GetBasePath(),
                                     state_->kurz_bez_bearbeiter);
}

ObjectPtr CQvGlobals::GetQvDXImageList() {
  return AsObject(Forward("GetQvDXImageList"));
}
ObjectPtr CQvGlobals::GetQvDXPicture(const std::string& sModul) {
  return AsObject(Forward("GetQvDXPicture", {sModul}));
}
ObjectPtr CQvGlobals::GetActiveMDIChildForm() {
  return AsObject(Forward("GetActiveMDIChildForm"));
}

std::shared_ptr<CQvComEvents_t_> CQvGlobals::QvComEvents() const {
  return state_->events;
}

QvLanguage_t_ CQvGlobals::QvLanguage() const { return state_->language; }
void CQvGlobals::set_QvLanguage(QvLanguage_t_ language) {
  state_->language = language;
}

QvLanguage_t_ CQvGlobals::StrToQvLanguage(const std::string& sName) const {
  if (text::EqualsText(sName, kGerman)) return qvlGerman;
  if (text::EqualsText(sName, kEnglish)) return qvlEnglish;
  throw Error::Object1000("Unbekanntes LanguageInfo");
}

std::string CQvGlobals::QvLanguageToStr(QvLanguage_t_ QvLanguage) const {
  if (QvLanguage == qvlGerman) return kGerman;
  if (QvLanguage == qvlEnglish) return kEnglish;
  throw Error::Object1000("Unbekanntes QvLanguage_t_");
}

bool CQvGlobals::IsLanguageStrOk(const std::string& sName) const {
  return text::EqualsText(sName, kGerman) || text::EqualsText(sName, kEnglish);
}

bool CQvGlobals::IsQvLanguageOk(QvLanguage_t_ QvLanguage) const {
  return QvLanguage == qvlGerman || QvLanguage == qvlEnglish;
}

void CQvGlobals::ForwardKey(std::string_view event, int32_t wParam) {
  const ObjectPtr toolbar = GetMDIParentAB();
  if (!toolbar) return;
  Variant args[] = {wParam, platform::Keyboard::Current()->ShiftState()};
  toolbar->Invoke(event, InvokeKind::kMethod, args);
}

void CQvGlobals::ABOnKeyDown(int32_t wParam, int32_t) {
  ForwardKey("OnKeyDown", wParam);
}
void CQvGlobals::ABOnKeyUp(int32_t wParam, int32_t) {
  ForwardKey("OnKeyUp", wParam);
}

void CQvGlobals::RaiseNotSupported(std::string_view label) {
  throw Error::Object1000("CQvGlobals: Die Methode " + std::string(label) +
                          " wird nicht mehr unterstützt.");
}

ClassInfo CQvGlobals::BuildClassInfo() {
  using T = CQvGlobals;
  return ClassBuilder<T>("CQvGlobals")
      .Set("frmMDIParentRef", &T::set_frmMDIParentRef)
      .Get("frmMDIParentRef", &T::frmMDIParentRef)
      .Get("QvDbContainer", &T::QvDbContainer)
      .Get("QvClipboard", &T::QvClipboard)
      .Get("ToolTipLevel", &T::ToolTipLevel)
      .Let("ToolTipLevel", &T::set_ToolTipLevel)
      .Get("KurzBezBearbeiter", &T::KurzBezBearbeiter)
      .Let("KurzBezBearbeiter", &T::set_KurzBezBearbeiter)
      .Get("LangBezBearbeiter", &T::LangBezBearbeiter)
      .Let("LangBezBearbeiter", &T::set_LangBezBearbeiter)
      .Method("SetABToolEnabled", &T::SetABToolEnabled)
      .Method("GetABToolEnabled", &T::GetABToolEnabled)
      .Method("IsFormForCurrentActiveBar", &T::IsFormForCurrentActiveBar)
      .Method("ActivebarTrackPopup", &T::ActivebarTrackPopup)
      .Method("GetMDIParentAB", &T::GetMDIParentAB)
      .Method("ModulSelected", &T::ModulSelected)
      .Method("SetEnabledForms", &T::SetEnabledForms)
      .Let("QvIntelliSense", &T::set_QvIntelliSense)
      .Get("QvIntelliSense", &T::QvIntelliSense)
      .Method("GetQVIniFile", &T::GetQVIniFile)
      .Method("GetDXIniFile", &T::GetDXIniFile)
      .Get("CurHelpFile", &T::CurHelpFile)
      .Method("GetMDIParentComAB", &T::GetMDIParentComAB)
      .Method("GetStartApp", &T::GetStartApp)
      .Method("GetBearbeiterPfad", &T::GetBearbeiterPfad)
      .Method("GetQvDXImageList", &T::GetQvDXImageList)
      .Method("GetQvDXPicture", &T::GetQvDXPicture)
      .Method("GetActiveMDIChildForm", &T::GetActiveMDIChildForm)
      .Get("QvComEvents", &T::QvComEvents)
      .Get("QvLanguage", &T::QvLanguage)
      .Let("QvLanguage", &T::set_QvLanguage)
      .Method("StrToQvLanguage", &T::StrToQvLanguage)
      .Method("QvLanguageToStr", &T::QvLanguageToStr)
      .Method("IsLanguageStrOk", &T::IsLanguageStrOk)
      .Method("IsQvLanguageOk", &T::IsQvLanguageOk)
      .Method("ABOnKeyDown", &T::ABOnKeyDown)
      .Method("ABOnKeyUp", &T::ABOnKeyUp)
      .Build();
}

QV_REGISTER_CLASS(CQvGlobals);

}  // namespace qv
