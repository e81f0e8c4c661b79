#include "datasource/open_files.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace qv::ds {
namespace {

std::mutex& Lock() {
  static std::mutex lock;
  return lock;
}

std::map<std::string, int>& Counts() {
  static std::map<std::string, int> counts;
  return counts;
}

std::string Canonical(const std::string& path) {
  std::error_code ec;
  const std::filesystem::path canonical =
      std::filesystem::weakly_canonical(path, ec);
  return ec ? path : canonical.string();
}

}  // namespace

void OpenFiles::Add(const std::string& path) {
  const std::string key = Canonical(path);
  std::lock_guard<std::mutex> guard(Lock());
  ++Counts()[key];
}

void OpenFiles::Remove(const std::string& path) {
  const std::string key = Canonical(path);
  std::lock_guard<std::mutex> guard(Lock());
  auto it = Counts().find(key);
  if (it != Counts().end() && --it->second <= 0) Counts().erase(it);
}

int OpenFiles::Count(const std::string& path) {
  const std::string key = Canonical(path);
  std::lock_guard<std::mutex> guard(Lock());
  auto it = Counts().find(key);
  return it == Counts().end() ? 0 : it->second;
}

}  // namespace qv::ds
