#include "central/property_catalog.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <sstream>
#include <vector>

#include "central/internal/builtin_properties.h"
#include "com/error.h"
#include "com/text.h"
#include "com/variant.h"
#include "platform/file_system.h"

namespace qv::central {
namespace {

constexpr char kEnvironmentVariable[] = "QV_PROPERTIES_FILE";
constexpr int kFieldCount = 9;
constexpr int kMaxDecimals = 9;

Error CatalogError(const std::string& text) {
  return Error::Object1000("QvProperties: " + text);
}

bool AllDigits(std::string_view s) {
  if (s.empty()) return false;
  for (char c : s) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}

std::vector<std::string> SplitFields(std::string_view line) {
  std::vector<std::string> fields;
  size_t start = 0;
  for (;;) {
    const size_t tab = line.find('\t', start);
    fields.emplace_back(text::Trim(line.substr(start, tab - start)));
    if (tab == std::string_view::npos) return fields;
    start = tab + 1;
  }
}

// The installed catalogue: share/qvglobal/properties.tsv beside the library's
// own folder, found from where the library was loaded.
std::string InstalledFile() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&InstalledFile), &info) == 0 ||
      info.dli_fname == nullptr) {
    return {};
  }
  const std::string lib_dir =
      platform::FileSystem::GetParentFolderName(info.dli_fname);
  return std::filesystem::path(lib_dir + "/" QVGLOBAL_LIB_TO_DATA
                                         "/qvglobal/properties.tsv")
      .lexically_normal()
      .string();
}

}  // namespace

const std::string& PropertyDef::Name(QvLanguage_t_ language) const {
  return language == qvlEnglish ? name_en : name_de;
}

const std::string& PropertyDef::UnitText(QvLanguage_t_ language) const {
  return language == qvlEnglish ? unit_en : unit_de;
}

std::string PropertyDef::Format(double value, QvLanguage_t_ language) const {
  const double shown = value * factor + offset;
  if (!std::isfinite(shown)) throw Error::Runtime(err::kOverflow);
  // Round half away from zero on the decimal value: the small relative
  // nudge makes 2.675 (stored as 2.67499999...) round up as written.
  const double scale = std::pow(10.0, decimals);
  double units = std::round(shown * scale * (1 + 4e-15));
  if (units == 0) units = 0;  // no "-0,0"
  std::string out = fmt::format("{:.{}f}", units / scale, decimals);
  if (language != qvlEnglish) {
    const size_t point = out.find('.');
    if (point != std::string::npos) out[point] = ',';
  }
  return out;
}

std::string PropertyDef::Reference() const {
  return fmt::format("{:03d}/{}", number, name_de);
}

PropertyCatalog PropertyCatalog::Parse(std::string_view text,
                                       std::string source) {
  PropertyCatalog catalog;
  catalog.source_ = std::move(source);
  int line_number = 0;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    ++line_number;
    start = end + 1;
    if (text::Trim(line).empty() || line.front() == '#') continue;
    catalog.AddLine(line, line_number);
  }
  return catalog;
}

void PropertyCatalog::AddLine(std::string_view line, int line_number) {
  auto fail = [&](const std::string& problem) {
    return CatalogError(
        fmt::format("{}, line {}: {}", source_, line_number, problem));
  };
  const std::vector<std::string> f = SplitFields(line);
  if (static_cast<int>(f.size()) != kFieldCount) {
    throw fail(fmt::format("expected {} tab-separated fields, found {}",
                           kFieldCount, f.size()));
  }
  PropertyDef def;
  if (f[0].size() != 3 || !AllDigits(f[0])) {
    throw fail("the number '" + f[0] + "' is not three digits");
  }
  def.number = std::stoi(f[0]);
  if (entries_.count(def.number) != 0) {
    throw fail("the number " + f[0] + " is given twice");
  }
  if (f[1].empty() || f[2].empty() || f[3].empty()) {
    throw fail("a name or the unit is missing");
  }
  const auto factor = ParseNumber(f[6]);
  const auto offset = ParseNumber(f[7]);
  if (!factor || *factor == 0 || !std::isfinite(*factor)) {
    throw fail("the factor '" + f[6] + "' is not a non-zero number");
  }
  if (!offset || !std::isfinite(*offset)) {
    throw fail("the offset '" + f[7] + "' is not a number");
  }
  if (f[8].size() != 1 || !AllDigits(f[8]) || f[8][0] - '0' > kMaxDecimals) {
    throw fail("the decimals '" + f[8] + "' are not a number from 0 to 9");
  }
  def.name_de = f[1];
  def.name_en = f[2];
  def.unit = f[3];
  def.unit_de = f[4];
  def.unit_en = f[5];
  def.factor = *factor;
  def.offset = *offset;
  def.decimals = f[8][0] - '0';
  entries_.emplace(def.number, std::move(def));
}

PropertyCatalog PropertyCatalog::Load(const std::string& file) {
  std::ifstream in;
  if (platform::FileSystem::Current()->FileExists(file)) {
    in.open(platform::FileSystem::ToNativePath(file), std::ios::binary);
  }
  if (!in.is_open()) throw CatalogError("cannot read '" + file + "'");
  std::stringstream raw;
  raw << in.rdbuf();
  if (in.bad()) throw CatalogError("cannot read '" + file + "'");
  return Parse(text::DecodeFileText(raw.str()), file);
}

std::string PropertyCatalog::DefaultFile() {
  const char* named = std::getenv(kEnvironmentVariable);
  if (named != nullptr && *named != '\0') return named;
  std::string installed = InstalledFile();
  if (!installed.empty() &&
      platform::FileSystem::Current()->FileExists(installed)) {
    return installed;
  }
  return {};
}

std::shared_ptr<const PropertyCatalog> PropertyCatalog::Default() {
  static std::mutex mutex;
  static std::string loaded_file;
  static std::shared_ptr<const PropertyCatalog> loaded;
  const std::string file = DefaultFile();
  std::lock_guard<std::mutex> lock(mutex);
  if (!loaded || loaded_file != file) {
    loaded = std::make_shared<const PropertyCatalog>(
        file.empty() ? Parse(internal::kBuiltinProperties, "built-in catalogue")
                     : Load(file));
    loaded_file = file;
  }
  return loaded;
}

const PropertyDef* PropertyCatalog::FindNumber(int number) const {
  const auto it = entries_.find(number);
  return it == entries_.end() ? nullptr : &it->second;
}

const PropertyDef& PropertyCatalog::Find(std::string_view reference) const {
  const std::string number =
      text::Trim(reference.substr(0, reference.find('/')));
  if (number.empty() || number.size() > 6 || !AllDigits(number)) {
    throw CatalogError("invalid property reference '" + std::string(reference) +
                       "'");
  }
  const PropertyDef* def = FindNumber(std::stoi(number));
  if (def == nullptr) {
    throw CatalogError("unknown property '" + std::string(reference) + "'");
  }
  return *def;
}

}  // namespace qv::central
