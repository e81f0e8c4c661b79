#include "platform/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "com/error.h"
#include "platform/service_slot.h"

namespace qv::platform {
namespace {

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

// Length of the root at the start of `path`: an optional drive ("C:")
// followed by all the separators after it.
size_t RootLength(std::string_view path) {
  size_t n = 0;
  if (path.size() >= 2 && path[1] == ':' &&
      ((path[0] >= 'A' && path[0] <= 'Z') ||
       (path[0] >= 'a' && path[0] <= 'z'))) {
    n = 2;
  }
  while (n < path.size() && IsSeparator(path[n])) ++n;
  return n;
}

// `path` without separators at its end, unless they belong to the root.
std::string_view WithoutTrailingSeparators(std::string_view path) {
  const size_t root = RootLength(path);
  while (path.size() > root && IsSeparator(path.back())) path.remove_suffix(1);
  return path;
}

// Byte offset where the last component of the trimmed `path` begins.
size_t LastComponentStart(std::string_view path) {
  const size_t separator = path.find_last_of("\\/");
  const size_t after = separator == std::string_view::npos ? 0 : separator + 1;
  return std::max(after, RootLength(path));
}

std::string_view LastComponent(std::string_view path) {
  path = WithoutTrailingSeparators(path);
  return path.substr(LastComponentStart(path));
}

[[noreturn]] void Raise(int32_t number) { throw Error::Runtime(number); }

// The error number for a failed system call on an existing or absent path.
int32_t NumberForErrno(int error) {
  switch (error) {
    case ENOENT:
      return err::kFileNotFound;
    case EEXIST:
    case ENOTEMPTY:
      return err::kFileAlreadyExists;
    case ENOTDIR:
      return err::kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return err::kPermissionDenied;
    default:
      return err::kPathFileAccessError;
  }
}

// 53 when the folder that should hold `native` exists, else 76.
int32_t MissingFileNumber(const std::string& native) {
  const std::string parent = FileSystem::GetParentFolderName(native);
  struct stat st;
  const bool parent_exists =
      parent.empty() ||
      (::stat(parent.c_str(), &st) == 0 && S_ISDIR(st.st_mode));
  return parent_exists ? err::kFileNotFound : err::kPathNotFound;
}

// Raises the error for `native` that `stat`/`unlink`/`rename` reported.
[[noreturn]] void RaiseForErrno(int error, const std::string& native) {
  if (error == ENOENT) Raise(MissingFileNumber(native));
  Raise(NumberForErrno(error));
}

// Renames `from` to `to` unless `to` exists. Returns 0 or an errno value.
int RenameNoReplace(const std::string& from, const std::string& to) {
#ifdef RENAME_NOREPLACE
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(),
                  RENAME_NOREPLACE) == 0) {
    return 0;
  }
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return errno;
#endif
  // The file system cannot refuse by itself: test first, then rename.
  struct stat st;
  if (::lstat(to.c_str(), &st) == 0) return EEXIST;
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// Moves a file to another file system: copy (refusing an existing target),
// then delete the original.
void CopyThenDelete(const std::string& from, const std::string& to) {
  std::error_code ec;
  std::filesystem::copy_file(from, to, std::filesystem::copy_options::none, ec);
  if (ec) RaiseForErrno(ec.value(), to);
  if (::unlink(from.c_str()) != 0) {
    const int error = errno;
    ::unlink(to.c_str());
    RaiseForErrno(error, from);
  }
}

ServiceSlot<std::shared_ptr<FileSystem>>& InstalledFileSystem() {
  static ServiceSlot<std::shared_ptr<FileSystem>> slot;
  return slot;
}

}  // namespace

std::string FileSystem::BuildPath(std::string_view left,
                                  std::string_view right) {
  if (left.empty()) return std::string(right);
  if (right.empty()) return std::string(left);
  std::string path(left);
  if (IsSeparator(left.back())) {
    while (!right.empty() && IsSeparator(right.front())) right.remove_prefix(1);
  } else if (!IsSeparator(right.front())) {
    const bool backslash = left.find('\\') != std::string_view::npos &&
                           left.find('/') == std::string_view::npos;
    path.push_back(backslash ? '\\' : '/');
  }
  return path.append(right);
}

std::string FileSystem::GetBaseName(std::string_view path) {
  const std::string_view name = LastComponent(path);
  return std::string(name.substr(0, name.rfind('.')));
}

std::string FileSystem::GetExtensionName(std::string_view path) {
  const std::string_view name = LastComponent(path);
  const size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? "" : std::string(name.substr(dot + 1));
}

std::string FileSystem::GetFileName(std::string_view path) {
  return std::string(LastComponent(path));
}

std::string FileSystem::GetParentFolderName(std::string_view path) {
  path = WithoutTrailingSeparators(path);
  if (path.size() <= RootLength(path)) return "";
  return std::string(
      WithoutTrailingSeparators(path.substr(0, LastComponentStart(path))));
}

std::string FileSystem::ToNativePath(std::string_view path) {
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

bool FileSystem::FolderExists(std::string_view path) const {
  struct stat st;
  return ::stat(ToNativePath(path).c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool FileSystem::FileExists(std::string_view path) const {
  struct stat st;
  return ::stat(ToNativePath(path).c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

void FileSystem::CreateFolder(std::string_view path) {
  const std::string native = ToNativePath(path);
  if (::mkdir(native.c_str(), 0777) == 0) return;
  // A missing parent folder is "Path not found", not "File not found".
  Raise(errno == ENOENT ? err::kPathNotFound : NumberForErrno(errno));
}

void FileSystem::DeleteFile(std::string_view path) {
  const std::string native = ToNativePath(path);
  struct stat st;
  if (::lstat(native.c_str(), &st) != 0) RaiseForErrno(errno, native);
  if (S_ISDIR(st.st_mode)) Raise(err::kFileNotFound);
  if (::unlink(native.c_str()) != 0) RaiseForErrno(errno, native);
}

void FileSystem::MoveFile(std::string_view source,
                          std::string_view destination) {
  const std::string from = ToNativePath(source);
  std::string to = ToNativePath(destination);
  if (!to.empty() && to.back() == '/') to += GetFileName(from);

  struct stat st;
  if (::lstat(from.c_str(), &st) != 0) RaiseForErrno(errno, from);
  if (S_ISDIR(st.st_mode)) Raise(err::kFileNotFound);
  const int error = RenameNoReplace(from, to);
  if (error == 0) return;
  if (error == EXDEV) return CopyThenDelete(from, to);
  // The source was there a moment ago, so a missing name is the target's.
  Raise(error == ENOENT ? err::kPathNotFound : NumberForErrno(error));
}

std::shared_ptr<FileSystem> FileSystem::Current() {
  static const auto real = std::make_shared<FileSystem>();
  return InstalledFileSystem().Get(real);
}

void FileSystem::Install(std::shared_ptr<FileSystem> file_system) {
  InstalledFileSystem().Install(std::move(file_system));
}

void FileSystem::Reset() { InstalledFileSystem().Reset(); }

}  // namespace qv::platform
