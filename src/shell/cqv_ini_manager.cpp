#include "shell/cqv_ini_manager.h"

#include <optional>
#include <string_view>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "platform/profile.h"

namespace qv {
namespace {

void CheckCondition(bool condition, const char* message) {
  if (!condition) {
    throw Error::Object1000(std::string("qvIniManager.dll: ") + message);
  }
}

}  // namespace

void CqvIniManager::CheckArguments(const std::string& sSection,
                                   const std::string& sKey) const {
  CheckCondition(!m_sIniFile.empty(), "Ini-File noch nicht angegeben");
  CheckCondition(!sSection.empty(), "Sektionsnamen nicht angegeben");
  CheckCondition(!sKey.empty(), "Schlüsselnamen nicht angegeben");
}

bool CqvIniManager::WriteString(const std::string& sSection,
                                const std::string& sKey,
                                const std::string& sValue) {
  CheckArguments(sSection, sKey);
  return platform::Profile::WriteString(m_sIniFile, sSection, sKey, sValue);
}

std::string CqvIniManager::GetString(const std::string& sSection,
                                     const std::string& sKey,
                                     const std::string& sDefault) {
  CheckArguments(sSection, sKey);
  return platform::Profile::GetString(m_sIniFile, sSection, sKey, sDefault,
                                      platform::Profile::kBufferSize);
}

bool CqvIniManager::WriteLong(const std::string& sSection,
                              const std::string& sKey, int32_t lValue) {
  CheckArguments(sSection, sKey);
  return WriteString(sSection, sKey, std::to_string(lValue));
}

int32_t CqvIniManager::GetLong(const std::string& sSection,
                               const std::string& sKey, int32_t lDefault) {
  CheckArguments(sSection, sKey);
  return platform::Profile::GetInt(m_sIniFile, sSection, sKey, lDefault);
}

bool CqvIniManager::DeleteSection(const std::string& sSection) {
  // A section deletion has no key: the placeholder passes the key check.
  CheckArguments(sSection, "?");
  return platform::Profile::WriteString(m_sIniFile, sSection, std::nullopt,
                                        std::nullopt);
}

bool CqvIniManager::DeleteKey(const std::string& sSection,
                              const std::string& sKey) {
  CheckArguments(sSection, sKey);
  return platform::Profile::WriteString(m_sIniFile, sSection, sKey,
                                        std::nullopt);
}

bool CqvIniManager::WriteBoolean(const std::string& sSection,
                                 const std::string& sKey, bool bValue) {
  CheckArguments(sSection, sKey);
  return WriteLong(sSection, sKey, bValue ? -1 : 0);
}

bool CqvIniManager::GetBoolean(const std::string& sSection,
                               const std::string& sKey, bool bDefault) {
  CheckArguments(sSection, sKey);
  return GetLong(sSection, sKey, bDefault ? -1 : 0) != 0;
}

ClassInfo CqvIniManager::BuildClassInfo() {
  using C = CqvIniManager;
  return ClassBuilder<C>("CqvIniManager")
      .Let("IniFile", &C::SetIniFile)
      .Get("IniFile", &C::IniFile)
      .Method("WriteString", &C::WriteString)
      .Method("GetString", &C::GetString, {Variant("")})
      .Method("WriteLong", &C::WriteLong)
      .Method("GetLong", &C::GetLong, {Variant(int32_t{0})})
      .Method("DeleteSection", &C::DeleteSection)
      .Method("DeleteKey", &C::DeleteKey)
      .Method("WriteBoolean", &C::WriteBoolean)
      .Method("GetBoolean", &C::GetBoolean, {Variant(false)})
      .Build();
}

QV_REGISTER_CLASS(CqvIniManager);

}  // namespace qv
