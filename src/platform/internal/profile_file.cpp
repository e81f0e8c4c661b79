#include "platform/internal/profile_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>

namespace qv::platform::internal {
namespace {

constexpr char kTemporaryMark[] = ".qvtmp-";

// The folder that holds `path` ("." for a bare file name).
std::filesystem::path FolderOf(const std::string& path) {
  const std::filesystem::path file(path);
  return file.has_parent_path() ? file.parent_path() : ".";
}

// True the first time a path is asked for in this process.
bool FirstTimeFor(const std::string& path) {
  static std::mutex mutex;
  static std::set<std::string> seen;
  std::lock_guard<std::mutex> lock(mutex);
  return seen.insert(path).second;
}

int64_t Nanoseconds(const struct timespec& ts) {
  return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

bool WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    bytes.remove_prefix(static_cast<size_t>(n));
  }
  return true;
}

// A name for a temporary file beside `path` that no other writer, in this
// process or another, picks at the same time.
std::string TemporaryName(const std::string& path) {
  static std::atomic<uint64_t> counter{0};
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  return path + kTemporaryMark + std::to_string(::getpid()) + "-" +
         std::to_string(counter.fetch_add(1)) + "-" +
         std::to_string(static_cast<uint64_t>(now) % 1'000'000);
}

// Creates the temporary file, writes and flushes `bytes`. Returns its name,
// or "" on failure (nothing is left behind then).
std::string WriteTemporary(const std::string& path, std::string_view bytes,
                           const struct stat* replaced) {
  std::string name;
  UniqueFd fd;
  for (int attempt = 0; attempt < 100 && !fd.valid(); ++attempt) {
    name = TemporaryName(path);
    fd = UniqueFd(
        ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!fd.valid() && errno != EEXIST) return "";
  }
  if (!fd.valid()) return "";
  if (replaced != nullptr) {
    // Only a privileged process may give the file away; others keep it.
    (void)!::fchown(fd.get(), replaced->st_uid, replaced->st_gid);
  }
  const bool ok = (replaced == nullptr ||
                   ::fchmod(fd.get(), replaced->st_mode & 07777) == 0) &&
                  WriteAll(fd.get(), bytes) && ::fsync(fd.get()) == 0;
  if (!ok) {
    ::unlink(name.c_str());
    return "";
  }
  return name;
}

// Flushes the folder that holds `path`, so that a rename or link into it
// survives a power cut as well as the file's bytes do. Some file systems
// (network shares among them) refuse to flush a folder; the new name stands
// either way, so a refusal is not an error.
void SyncFolderOf(const std::string& path) {
  const std::string folder = FolderOf(path).string();
  UniqueFd fd(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd.valid()) (void)::fsync(fd.get());
}

}  // namespace

FileStamp StampOf(const struct stat& st) {
  return {st.st_dev, st.st_ino, st.st_size, Nanoseconds(st.st_mtim),
          Nanoseconds(st.st_ctim)};
}

UniqueFd::~UniqueFd() {
  if (fd_ >= 0) ::close(fd_);
}

UniqueFd& UniqueFd::operator=(UniqueFd&& other) noexcept {
  if (this != &other) {
    if (fd_ >= 0) ::close(fd_);
    fd_ = other.fd_;
    other.fd_ = -1;
  }
  return *this;
}

std::optional<std::string> ReadAll(int fd) {
  // Read straight into the string, sized for the file as it is now (one
  // byte more, so that reaching the end needs no second round).
  struct stat st {};
  const size_t expected =
      ::fstat(fd, &st) == 0 ? static_cast<size_t>(st.st_size) + 1 : 65536;
  std::string bytes(expected, '\0');
  size_t length = 0;
  for (;;) {
    if (length == bytes.size()) bytes.resize(bytes.size() * 2);
    const ssize_t n = ::pread(fd, bytes.data() + length, bytes.size() - length,
                              static_cast<off_t>(length));
    if (n < 0) {
      if (errno == EINTR) continue;
      return std::nullopt;
    }
    if (n == 0) break;
    length += static_cast<size_t>(n);
  }
  bytes.resize(length);
  return bytes;
}

LockResult LockExisting(const std::string& path, LockedFile& out) {
  // A writer that renames a new file over the path while we wait for the
  // lock leaves us holding the lock of a file nobody reads any more: then
  // start again on the file the path names now.
  for (;;) {
    UniqueFd fd(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    if (!fd.valid()) {
      return errno == ENOENT ? LockResult::kMissing : LockResult::kFailed;
    }
    while (::flock(fd.get(), LOCK_EX) != 0) {
      if (errno != EINTR) return LockResult::kFailed;
    }
    struct stat locked {
    }, named{};
    if (::fstat(fd.get(), &locked) != 0) return LockResult::kFailed;
    if (::stat(path.c_str(), &named) != 0) {
      if (errno == ENOENT) return LockResult::kMissing;
      return LockResult::kFailed;
    }
    if (locked.st_dev == named.st_dev && locked.st_ino == named.st_ino) {
      out.fd = std::move(fd);
      out.st = locked;
      return LockResult::kLocked;
    }
  }
}

WriteResult WriteAtomically(const std::string& path, std::string_view bytes,
                            const struct stat* replaced) {
  const std::string temporary = WriteTemporary(path, bytes, replaced);
  if (temporary.empty()) return WriteResult::kFailed;
  WriteResult result = WriteResult::kWritten;
  if (replaced != nullptr) {
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
      result = WriteResult::kFailed;
    }
  } else if (::link(temporary.c_str(), path.c_str()) != 0) {
    result = errno == EEXIST ? WriteResult::kExists : WriteResult::kFailed;
  }
  if (result != WriteResult::kWritten || replaced == nullptr) {
    ::unlink(temporary.c_str());
  }
  if (result == WriteResult::kWritten) SyncFolderOf(path);
  return result;
}

void RemoveStaleTemporaries(const std::string& path) {
  namespace fs = std::filesystem;
  if (!FirstTimeFor(path)) return;
  const fs::path file(path);
  const std::string prefix = file.filename().string() + kTemporaryMark;
  const auto stale_before = fs::file_time_type::clock::now() -
                            std::chrono::seconds(kStaleTemporaryAgeSeconds);
  const fs::path folder = FolderOf(path);
  std::error_code ec;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end;
       it.increment(ec)) {
    if (!it->path().filename().string().starts_with(prefix)) continue;
    std::error_code stat_error;
    const bool regular = fs::is_regular_file(it->symlink_status(stat_error));
    const auto changed = it->last_write_time(stat_error);
    if (!stat_error && regular && changed < stale_before) {
      fs::remove(it->path(), stat_error);
    }
  }
}

}  // namespace qv::platform::internal
