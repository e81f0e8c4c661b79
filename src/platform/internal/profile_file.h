// The file operations behind Profile: reading a whole file, an exclusive
// advisory lock on an existing file that is sure to be the file its path
// names, and replacing or creating a file atomically (a temporary file in
// the same folder, flushed to disk, then renamed or linked into place),
// and sweeping the temporary files that killed writers left behind.
//
// Threads: the functions may be called from any thread (the sweep keeps the
// paths it has swept under a mutex); a LockedFile belongs to the thread
// that opened it.
#ifndef QVGLOBAL_PLATFORM_INTERNAL_PROFILE_FILE_H_
#define QVGLOBAL_PLATFORM_INTERNAL_PROFILE_FILE_H_

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qv::platform::internal {

// What tells one version of a file from another without reading it.
struct FileStamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  int64_t mtime_ns = 0;
  int64_t ctime_ns = 0;
  bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(const struct stat& st);

// Owns a file descriptor.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : fd_(fd) {}
  ~UniqueFd();
  UniqueFd(UniqueFd&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
  UniqueFd& operator=(UniqueFd&& other) noexcept;
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }

 private:
  int fd_;
};

// The bytes of an open file from its start; nothing on a read error.
std::optional<std::string> ReadAll(int fd);

// An existing file opened for writing with an exclusive flock held on it.
struct LockedFile {
  UniqueFd fd;
  struct stat st {};
};
enum class LockResult { kLocked, kMissing, kFailed };
// Opens and locks the file at `path`, waiting for the lock. When the path
// was renamed over while waiting, the new file is locked instead.
LockResult LockExisting(const std::string& path, LockedFile& out);

enum class WriteResult { kWritten, kExists, kFailed };
// Writes `bytes` to a temporary file beside `path` and flushes it. With
// `replaced`, the status of the file at `path`, the new file gets its
// permission bits (and its owner, where the process may set it) and
// replaces it; without, it gets the default permissions of a new file and
// is linked to `path` only when no file is there (kExists otherwise). The
// temporary file is gone afterwards, and the folder is flushed after a
// successful write.
WriteResult WriteAtomically(const std::string& path, std::string_view bytes,
                            const struct stat* replaced);

// Removes the temporary files that writers killed before their rename left
// beside `path`: those of its names (`<path>.qvtmp-...`) last changed more
// than kStaleTemporaryAgeSeconds ago. A writer holds its temporary file for
// milliseconds, so an old one belongs to nobody, even on a share that
// other hosts write to. Each path is swept once per process: files are
// stranded only by processes that died. Call it holding the file's lock.
inline constexpr int64_t kStaleTemporaryAgeSeconds = 600;
void RemoveStaleTemporaries(const std::string& path);

}  // namespace qv::platform::internal

#endif  // QVGLOBAL_PLATFORM_INTERNAL_PROFILE_FILE_H_
