#include "platform/profile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "com/text.h"
#include "platform/file_system.h"
#include "platform/internal/profile_document.h"
#include "platform/internal/profile_file.h"

namespace qv::platform {
namespace {

using internal::FileStamp;
using internal::ProfileDocument;

// A file changed less than this long before it was read may change again
// without any of its stamps changing (file systems keep times in ticks of up
// to two seconds); it is read again every time until it is older.
constexpr int64_t kTimestampGranularityNs = 2'000'000'000;
// The cache forgets everything when it grows past this many files.
constexpr size_t kMaxCachedFiles = 256;

// A file as it reads, with its sections and keys found by folded names.
struct ParsedProfile {
  std::vector<ProfileSection> sections;
  std::unordered_map<std::string, size_t> section_index;
  std::vector<std::unordered_map<std::string, size_t>> key_index;

  explicit ParsedProfile(std::string bytes) {
    for (auto& s : ProfileDocument::FromBytes(std::move(bytes)).Sections()) {
      section_index.emplace(text::LCase(s.name), sections.size());
      auto& keys = key_index.emplace_back();
      for (size_t i = 0; i < s.keys.size(); ++i) {
        keys.emplace(text::LCase(s.keys[i].first), i);
      }
      sections.push_back({std::move(s.name), std::move(s.keys)});
    }
  }

  const std::string* Find(std::string_view section,
                          std::string_view key) const {
    const auto s = section_index.find(text::LCase(section));
    if (s == section_index.end()) return nullptr;
    const auto k = key_index[s->second].find(text::LCase(key));
    if (k == key_index[s->second].end()) return nullptr;
    return &sections[s->second].keys[k->second].second;
  }
};

struct CacheEntry {
  FileStamp stamp;
  std::shared_ptr<const ParsedProfile> parsed;
};

struct Cache {
  std::mutex mutex;
  std::unordered_map<std::string, CacheEntry> entries;
};

Cache& TheCache() {
  static Cache cache;
  return cache;
}

int64_t RealTimeNs() {
  struct timespec now {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

// The parsed file at `path`, from the cache while the file is unchanged;
// null when it cannot be read.
std::shared_ptr<const ParsedProfile> Load(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0) return nullptr;
  Cache& cache = TheCache();
  {
    std::lock_guard<std::mutex> lock(cache.mutex);
    const auto it = cache.entries.find(path);
    if (it != cache.entries.end() &&
        it->second.stamp == internal::StampOf(st)) {
      return it->second.parsed;
    }
  }
  const internal::UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat before {
  }, after{};
  if (!fd.valid() || ::fstat(fd.get(), &before) != 0) return nullptr;
  std::optional<std::string> bytes = internal::ReadAll(fd.get());
  if (!bytes || ::fstat(fd.get(), &after) != 0) return nullptr;
  auto parsed = std::make_shared<const ParsedProfile>(*std::move(bytes));
  const FileStamp stamp = internal::StampOf(after);
  const bool settled = RealTimeNs() - std::max(stamp.mtime_ns, stamp.ctime_ns) >
                       kTimestampGranularityNs;
  if (settled && stamp == internal::StampOf(before)) {
    std::lock_guard<std::mutex> lock(cache.mutex);
    if (cache.entries.size() >= kMaxCachedFiles) cache.entries.clear();
    cache.entries[path] = {stamp, parsed};
  }
  return parsed;
}

std::string_view RTrimBlanks(std::string_view s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) {
    s.remove_suffix(1);
  }
  return s;
}

bool HasLineBreak(std::string_view s) {
  return s.find_first_of("\r\n") != std::string_view::npos;
}

// Names and values that the file could not hold as one line of their kind.
bool IsWritable(std::string_view section, std::optional<std::string_view> key,
                std::optional<std::string_view> value) {
  if (HasLineBreak(section) || section.find(']') != std::string_view::npos) {
    return false;
  }
  if (key && (HasLineBreak(*key) || key->find('=') != std::string_view::npos ||
              key->find_first_not_of(" \t") == std::string_view::npos)) {
    return false;
  }
  return !value || !HasLineBreak(*value);
}

// The file a symbolic link at `path` points to, so that a write replaces
// that file and keeps the link; `path` itself for anything else.
std::string LinkTarget(const std::string& path) {
  struct stat st {};
  if (::lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return path;
  char* target = ::realpath(path.c_str(), nullptr);
  if (target == nullptr) return path;
  std::string resolved(target);
  std::free(target);
  return resolved;
}

// Applies the write to `doc`; false when it changes nothing.
bool Apply(ProfileDocument& doc, std::string_view section,
           std::optional<std::string_view> key,
           std::optional<std::string_view> value) {
  if (!key) return doc.DeleteSection(section);
  if (!value) return doc.DeleteKey(section, *key);
  return doc.SetValue(section, *key, *value);
}

}  // namespace

std::string Profile::GetString(std::string_view file, std::string_view section,
                               std::string_view key,
                               std::string_view default_value,
                               size_t buffer_size) {
  if (buffer_size == 0) return "";
  const auto parsed = Load(FileSystem::ToNativePath(file));
  const std::string* value = parsed ? parsed->Find(section, key) : nullptr;
  return text::Left(
      value ? std::string_view(*value) : RTrimBlanks(default_value),
      buffer_size - 1);
}

int32_t Profile::GetInt(std::string_view file, std::string_view section,
                        std::string_view key, int32_t default_value) {
  const auto parsed = Load(FileSystem::ToNativePath(file));
  const std::string* value = parsed ? parsed->Find(section, key) : nullptr;
  if (!value) return default_value;
  std::string_view s = *value;
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) {
    s.remove_prefix(1);
  }
  bool negative = false;
  if (!s.empty() && (s.front() == '-' || s.front() == '+')) {
    negative = s.front() == '-';
    s.remove_prefix(1);
  }
  uint32_t result = 0;
  for (char c : s) {
    if (c < '0' || c > '9') break;
    result = result * 10 + static_cast<uint32_t>(c - '0');
  }
  if (negative) result = 0u - result;
  return static_cast<int32_t>(result);
}

bool Profile::WriteString(std::string_view file, std::string_view section,
                          std::optional<std::string_view> key,
                          std::optional<std::string_view> value) {
  if (!IsWritable(section, key, value)) return false;
  const std::string path = LinkTarget(FileSystem::ToNativePath(file));
  for (;;) {
    internal::LockedFile locked;
    switch (internal::LockExisting(path, locked)) {
      case internal::LockResult::kFailed:
        return false;
      case internal::LockResult::kMissing: {
        if (!key || !value) return true;  // nothing to delete
        ProfileDocument doc;
        doc.SetValue(section, *key, *value);
        const auto result =
            internal::WriteAtomically(path, std::move(doc).ToBytes(), nullptr);
        if (result == internal::WriteResult::kExists) continue;  // raced
        return result == internal::WriteResult::kWritten;
      }
      case internal::LockResult::kLocked:
        break;
    }
    internal::RemoveStaleTemporaries(path);
    std::optional<std::string> bytes = internal::ReadAll(locked.fd.get());
    if (!bytes) return false;
    ProfileDocument doc = ProfileDocument::FromBytes(*std::move(bytes));
    if (!Apply(doc, section, key, value)) return true;
    return internal::WriteAtomically(path, std::move(doc).ToBytes(),
                                     &locked.st) ==
           internal::WriteResult::kWritten;
  }
}

std::optional<std::vector<ProfileSection>> Profile::ReadSections(
    std::string_view file) {
  const auto parsed = Load(FileSystem::ToNativePath(file));
  if (!parsed) return std::nullopt;
  return parsed->sections;
}

void Profile::ClearCache() {
  Cache& cache = TheCache();
  std::lock_guard<std::mutex> lock(cache.mutex);
  cache.entries.clear();
}

}  // namespace qv::platform
