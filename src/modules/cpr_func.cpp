#include "modules/cpr_func.h"

#include <vector>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "platform/file_system.h"

namespace qv {
namespace {

using platform::FileSystem;

constexpr const char* kExtension = "qv3";
constexpr const char* kSeparator = "_";
constexpr const char* kDot = ".";

bool HasQvExtension(const std::string& path) {
  return text::EqualsText(FileSystem::GetExtensionName(path), kExtension);
}

}  // namespace

std::string CPRFunc_t_::FileNameToModul(const std::string& sFilename) const {
  const std::vector<std::string> parts = text::Split(
      FileSystem::GetBaseName(sFilename), kSeparator, text::CompareMode::kText);
  if (parts.size() <= 1) {
    throw Error::Object1000("Kein Modul in Filename " + sFilename +
                            " gefunden");
  }
  return parts.back();
}

std::string CPRFunc_t_::FileNameToModulName(
    const std::string& sFilename) const {
  const std::string base = FileSystem::GetBaseName(sFilename);
  const std::vector<std::string> parts =
      text::Split(base, kSeparator, text::CompareMode::kText);
  if (parts.size() <= 1) {
    throw Error::Object1000("Kein Modulname in Filename " + sFilename +
                            " gefunden");
  }
  return text::Left(base, text::Len(base) - text::Len(parts.back()) - 1);
}

std::string CPRFunc_t_::ModulToFileName(const std::string& sModulname,
                                        const std::string& sModul) const {
  return sModulname + kSeparator + sModul + kDot + kExtension;
}

std::string CPRFunc_t_::PathToProjName(const std::string& sProjPath) const {
  return FileSystem::GetBaseName(sProjPath);
}

bool CPRFunc_t_::IsPathProjectFolder(const std::string& sPath) const {
  return HasQvExtension(sPath) &&
         !HasQvExtension(FileSystem::GetParentFolderName(sPath));
}

std::string CPRFunc_t_::ProjNameToPath(const std::string& sPath,
                                       const std::string& sProjName) const {
  return FileSystem::BuildPath(sPath, sProjName + kDot + kExtension);
}

bool CPRFunc_t_::IsQvFile(const std::string& sFilename) const {
  return HasQvExtension(sFilename);
}

ClassInfo CPRFunc_t_::BuildClassInfo() {
  using P = CPRFunc_t_;
  return ClassBuilder<P>("CPRFunc_t_")
      .Method("FileNameToModul", &P::FileNameToModul)
      .Method("FileNameToModulName", &P::FileNameToModulName)
      .Method("ModulToFileName", &P::ModulToFileName)
      .Method("PathToProjName", &P::PathToProjName)
      .Method("IsPathProjectFolder", &P::IsPathProjectFolder)
      .Method("ProjNameToPath", &P::ProjNameToPath)
      .Method("IsQvFile", &P::IsQvFile)
      .Build();
}

QV_REGISTER_CLASS(CPRFunc_t_);

}  // namespace qv
