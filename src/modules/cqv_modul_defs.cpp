#include "modules/cqv_modul_defs.h"

#include <utility>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "modules/modul_table.h"

namespace qv {
namespace {

constexpr std::string_view kModul = "Modul '";
constexpr std::string_view kKatalog = "Katalog für das Modul '";

// The first record with the code `sModul`, letter case ignored; nullptr
// when there is none.
std::shared_ptr<CQvModulDef> Find(const std::string& sModul) {
  for (const auto& def : ThreadModulTable()) {
    if (text::EqualsText(def->m_sExtension, sModul)) return def;
  }
  return nullptr;
}

[[noreturn]] void RaiseNotFound(std::string_view method, std::string_view what,
                                const std::string& sModul) {
  throw Error::Object1000("CQvModulDefs->" + std::string(method) + ": " +
                          std::string(what) + sModul + "' nicht gefunden.");
}

// GetQvModulDef and StrToModul share this text.
std::shared_ptr<CQvModulDef> RequireStructure(const std::string& sModul) {
  std::shared_ptr<CQvModulDef> def = Find(sModul);
  if (!def) {
    throw Error::Object1000("CQvModulDefs->GetProjectModul: Finde zu '" +
                            sModul + "' kein Struktur");
  }
  return def;
}

}  // namespace

CQvModulDefs::CQvModulDefs() { ThreadModulTable(); }

const CQvModulDef& CQvModulDefs::Require(std::string_view method,
                                         std::string_view what,
                                         const std::string& sModul) {
  const std::shared_ptr<CQvModulDef> def = Find(sModul);
  if (!def) RaiseNotFound(method, what, sModul);
  return *def;  // the table keeps the record alive
}

SafeArray CQvModulDefs::GetArrayQvModulDefs() const {
  SafeArray array;
  for (const auto& def : ThreadModulTable()) array.Append(Variant(def));
  return array;
}

std::shared_ptr<CQvModulDef> CQvModulDefs::GetQvModulDef(
    const std::string& sModul) const {
  return RequireStructure(sModul);
}

QvModul_t_ CQvModulDefs::StrToModul(const std::string& sModul) const {
  return RequireStructure(sModul)->m_eModul;
}

bool CQvModulDefs::IsMultiProjectModul(const std::string& sModul) const {
  return Require("IsMultiProjectModul", kModul, sModul).m_bMulti;
}

bool CQvModulDefs::IsModulWithBearbeitungsstand(
    const std::string& sModul) const {
  return Require("IsModulWithBearbeitungsstand", kModul, sModul)
      .m_bIsModulWithBearbeitungsstand;
}

bool CQvModulDefs::IsModulWithBearbeitungsaenderungen(
    const std::string& sModul) const {
  return Require("IsModulWithBearbeitungsaenderungen", kModul, sModul)
      .m_bIsModulWithBearbeitungsaenderungen;
}

bool CQvModulDefs::IsModulToCopyFromUser(const std::string& sModul) const {
  return Require("IsModulToCopyFromUser", kModul, sModul)
      .m_bIsModulToCopyFromUser;
}

bool CQvModulDefs::IsProjectDBModul(const std::string& sModul) const {
  for (const auto& def : ThreadModulTable()) {
    for (const Variant& code : def->m_aModuls.ToArray()) {
      if (text::EqualsText(code.ToString(), sModul)) return true;
    }
  }
  return false;
}

bool CQvModulDefs::IsProjectModul(const std::string& sModul) const {
  return Find(sModul) != nullptr;
}

std::string CQvModulDefs::GetModulDescription(const std::string& sModul) const {
  return Require("GetModulDescription", "Beschreibung für das Modul '", sModul)
      .m_sDescription;
}

std::string CQvModulDefs::GetQvSpecDesc(const std::string& sModul) const {
  return Require("GetQvSpecDesc", "Spezielle Beschreibung für das Modul '",
                 sModul)
      .m_sQvSpecDesc;
}

std::shared_ptr<Dictionary> CQvModulDefs::GetAllModulExtensions() const {
  auto codes = std::make_shared<Dictionary>(text::CompareMode::kText);
  for (const auto& def : ThreadModulTable()) {
    for (const Variant& code : def->m_aModuls.ToArray()) {
      if (!codes->Exists(code)) codes->Add(code, code);
    }
  }
  return codes;
}

std::string CQvModulDefs::GetExtension(QvModul_t_ Modul) const {
  for (const auto& def : ThreadModulTable()) {
    if (def->m_eModul == Modul) return def->m_sExtension;
  }
  RaiseNotFound("GetExtension", kModul,
                std::to_string(static_cast<int32_t>(Modul)));
}

Variant CQvModulDefs::GetCatalogs(const std::string& sModul) const {
  return Require("GetCatalogs", kKatalog, sModul).m_aCatalogs;
}

std::string CQvModulDefs::GetRLTCalcModulClass(
    const std::string& sModul) const {
  return Require("GetRLTCalcModulClass", kKatalog, sModul).m_sRLTCalcModulClass;
}

bool CQvModulDefs::GetND(const std::string& sModul) const {
  return Require("GetND", kKatalog, sModul).m_bND;
}

bool CQvModulDefs::ShowPicInDX(const std::string& sModul) const {
  return Require("ShowPicInDX", kKatalog, sModul).m_bShowPicInDX;
}

std::string CQvModulDefs::BuildDBName(const std::string& sModulname,
                                      QvModul_t_ sModul) {
  const std::string code = GetExtension(sModul);
  if (!pr_func_) pr_func_ = std::make_shared<CPRFunc_t_>();
  return pr_func_->ModulToFileName(sModulname, code);
}

ClassInfo CQvModulDefs::BuildClassInfo() {
  using M = CQvModulDefs;
  return ClassBuilder<M>("CQvModulDefs")
      .Method("GetArrayQvModulDefs", &M::GetArrayQvModulDefs)
      .Method("GetQvModulDef", &M::GetQvModulDef)
      .Method("StrToModul", &M::StrToModul)
      .Method("IsMultiProjectModul", &M::IsMultiProjectModul)
      .Method("IsModulWithBearbeitungsstand", &M::IsModulWithBearbeitungsstand)
      .Method("IsModulWithBearbeitungsaenderungen",
              &M::IsModulWithBearbeitungsaenderungen)
      .Method("IsModulToCopyFromUser", &M::IsModulToCopyFromUser)
      .Method("IsProjectDBModul", &M::IsProjectDBModul)
      .Method("IsProjectModul", &M::IsProjectModul)
      .Method("GetModulDescription", &M::GetModulDescription)
      .Method("GetQvSpecDesc", &M::GetQvSpecDesc)
      .Method("GetAllModulExtensions", &M::GetAllModulExtensions)
      .Method("GetExtension", &M::GetExtension)
      .Method("GetCatalogs", &M::GetCatalogs)
      .Method("GetRLTCalcModulClass", &M::GetRLTCalcModulClass)
      .Method("GetND", &M::GetND)
      .Method("ShowPicInDX", &M::ShowPicInDX)
      .Method("BuildDBName", &M::BuildDBName)
      .Build();
}

QV_REGISTER_CLASS(CQvModulDefs);

}  // namespace qv
