#include "datasource/internal/connection_string.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <system_error>
#include <vector>

#include "com/error.h"
#include "com/text.h"
#include "datasource/db_error.h"
#include "platform/file_system.h"

namespace qv::ds {
namespace {

namespace fs = std::filesystem;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

// Reads one value starting at `pos` (after "="), honouring quotes; leaves
// `pos` at the ";" that ends it or at the end.
std::string ReadValue(std::string_view s, size_t& pos) {
  while (pos < s.size() && IsBlank(s[pos])) ++pos;
  if (pos < s.size() && (s[pos] == '"' || s[pos] == '\'')) {
    const char quote = s[pos];
    const size_t close = s.find(quote, pos + 1);
    if (close != std::string_view::npos) {
      std::string value(s.substr(pos + 1, close - pos - 1));
      pos = s.find(';', close);
      if (pos == std::string_view::npos) pos = s.size();
      return value;
    }
  }
  size_t end = s.find(';', pos);
  if (end == std::string_view::npos) end = s.size();
  std::string value(TrimBlanks(s.substr(pos, end - pos)));
  pos = end;
  return value;
}

bool Exists(const fs::path& p) {
  std::error_code ec;
  return fs::exists(fs::symlink_status(p, ec));
}

// The entry of `folder` whose name equals `name` without regard to case.
std::optional<fs::path> FindEntry(const fs::path& folder,
                                  const std::string& name) {
  std::error_code ec;
  std::vector<std::string> matches;
  for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end;
       !ec && it != end; it.increment(ec)) {
    std::string entry = it->path().filename().string();
    if (text::EqualsText(entry, name)) matches.push_back(std::move(entry));
  }
  if (matches.empty()) return std::nullopt;
  std::sort(matches.begin(), matches.end());
  return folder / matches.front();
}

}  // namespace

ConnectionSettings ParseConnectionString(std::string_view s,
                                         std::string_view source) {
  ConnectionSettings settings;
  bool has_source = false;
  size_t pos = 0;
  while (pos < s.size()) {
    const size_t eq = s.find('=', pos);
    const size_t semi = s.find(';', pos);
    if (eq == std::string_view::npos ||
        (semi != std::string_view::npos && semi < eq)) {
      if (semi == std::string_view::npos) break;
      pos = semi + 1;  // a piece without "=" is ignored
      continue;
    }
    const std::string key =
        text::ToLowerAscii(TrimBlanks(s.substr(pos, eq - pos)));
    pos = eq + 1;
    std::string value = ReadValue(s, pos);
    if (pos < s.size()) ++pos;  // skip ";"
    if (key == "provider") settings.provider = value;
    if (key == "data source") {
      settings.data_source = std::move(value);
      has_source = true;
    }
  }
  const std::string provider = text::ToLowerAscii(settings.provider);
  if (!provider.empty() && provider != "sqlite" &&
      provider != "microsoft.jet.oledb.4.0") {
    throw Error(dberr::kConnection, std::string(source),
                "unsupported provider: '" + settings.provider + "'");
  }
  if (!has_source || settings.data_source.empty()) {
    throw Error(dberr::kConnection, std::string(source),
                "no Data Source in connection string");
  }
  return settings;
}

void CheckPathUsable(std::string_view path, std::string_view source) {
  if (path.find('\0') != std::string_view::npos) {
    std::string shown;
    for (char c : path)
      shown += c == '\0' ? std::string("\\0") : std::string(1, c);
    throw Error(dberr::kConnection, std::string(source),
                "invalid path (NUL character): '" + shown + "'");
  }
  const std::string native = platform::FileSystem::ToNativePath(path);
  bool too_long = native.size() >= PATH_MAX;
  for (const fs::path& part : fs::path(native)) {
    too_long = too_long || part.native().size() > NAME_MAX;
  }
  struct stat info;
  if (too_long ||
      (::stat(native.c_str(), &info) != 0 && errno == ENAMETOOLONG)) {
    throw Error(dberr::kConnection, std::string(source),
                "path too long: '" + std::string(path) + "'");
  }
}

std::optional<std::string> FindPathIgnoringCase(std::string_view path) {
  const fs::path native(platform::FileSystem::ToNativePath(path));
  if (native.empty()) return std::nullopt;
  if (Exists(native)) return native.string();
  fs::path found = native.root_path();
  for (const fs::path& part : native.relative_path()) {
    const std::string name = part.string();
    if (name.empty() || name == "." || name == "..") {
      found /= part;
      continue;
    }
    if (Exists(found / part)) {
      found /= part;
      continue;
    }
    std::optional<fs::path> match = FindEntry(found, name);
    if (!match) return std::nullopt;
    found = *match;
  }
  return found.string();
}

}  // namespace qv::ds
