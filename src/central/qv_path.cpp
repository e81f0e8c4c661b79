#include "central/qv_path.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "com/text.h"
#include "platform/common_app_data.h"
#include "platform/file_system.h"

namespace qv::central {
namespace {

constexpr char kCatalogKey[] = "CatalogPath";
constexpr char kBaseKey[] = "BasePath";

std::string SuiteFolder() {
  return platform::FileSystem::BuildPath(platform::CommonAppDataFolder(),
                                         "qv-software");
}

}  // namespace

QvPath::QvPath() : file_(DefaultFile()) { Load(); }

QvPath::QvPath(const std::string& enviroment_asc) : file_(enviroment_asc) {
  Load();
}

std::string QvPath::DefaultFile() {
  const char* named = std::getenv("QV_ENVIROMENT_ASC");
  if (named != nullptr && *named != '\0') return named;
  return platform::FileSystem::BuildPath(SuiteFolder(), "enviroment.asc");
}

void QvPath::Load() {
  ReadSettings();
  if (base_path_.empty()) base_path_ = SuiteFolder();
  if (catalog_path_.empty()) return;  // kEnviromentAscNotValid
  state_ = platform::FileSystem::Current()->FolderExists(catalog_path_)
               ? kValid
               : kPathNotValid;
}

void QvPath::ReadSettings() {
  std::ifstream in(file_, std::ios::binary);
  if (!in) return;
  std::stringstream raw;
  raw << in.rdbuf();
  std::istringstream lines(text::DecodeFileText(raw.str()));
  std::string line;
  while (std::getline(lines, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string trimmed = text::Trim(line);
    if (trimmed.empty() || trimmed[0] == ';' || trimmed[0] == '#') continue;
    const size_t eq = trimmed.find('=');
    if (eq == std::string::npos) continue;
    const std::string key = text::Trim(trimmed.substr(0, eq));
    if (text::EqualsText(key, kCatalogKey)) {
      catalog_path_ = text::Trim(trimmed.substr(eq + 1));
    } else if (text::EqualsText(key, kBaseKey)) {
      base_path_ = text::Trim(trimmed.substr(eq + 1));
    }
  }
}

}  // namespace qv::central
