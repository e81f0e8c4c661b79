#include "datasource/open_files.h"

#include <sys/stat.h>

#include <map>
#include <mutex>

#include "datasource/internal/connection_string.h"

namespace qv::ds {
namespace {

std::mutex& Lock() {
  static std::mutex lock;
  return lock;
}

std::map<FileId, int>& Counts() {
  static std::map<FileId, int> counts;
  return counts;
}

}  // namespace

std::optional<FileId> FileId::Of(const std::string& path) {
  struct stat info {};
  if (path.empty() || ::stat(path.c_str(), &info) != 0) return std::nullopt;
  return FileId{static_cast<uint64_t>(info.st_dev),
                static_cast<uint64_t>(info.st_ino)};
}

std::optional<FileId> FileId::Resolve(const std::string& path) {
  const std::optional<std::string> found = FindPathIgnoringCase(path);
  return found ? Of(*found) : std::nullopt;
}

std::string FileId::Key() const {
  return std::to_string(device) + ":" + std::to_string(inode);
}

void OpenFiles::Add(const FileId& file) {
  std::lock_guard<std::mutex> guard(Lock());
  ++Counts()[file];
}

void OpenFiles::Remove(const FileId& file) {
  std::lock_guard<std::mutex> guard(Lock());
  auto it = Counts().find(file);
  if (it != Counts().end() && --it->second <= 0) Counts().erase(it);
}

int OpenFiles::Count(const FileId& file) {
  std::lock_guard<std::mutex> guard(Lock());
  auto it = Counts().find(file);
  return it == Counts().end() ? 0 : it->second;
}

}  // namespace qv::ds
