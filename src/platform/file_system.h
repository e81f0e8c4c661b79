// FileSystem is the library's file-system helper: the path naming rules of
// the suite (base name, extension, parent folder, joining) and the few file
// operations it needs (testing, creating folders, deleting and moving
// files).
//
// Both `\` and `/` separate path levels in the naming rules, because project
// paths written on Windows ("C:\P\Haus_A_VM.qv3") travel in the suite's
// files and settings. A leading drive ("C:") followed by separators is a
// root, like "/": it is kept as the parent of the folders directly in it.
//
// The file operations act on the real file system. They hand the path to the
// operating system with every `\` replaced by `/` (ToNativePath), so a
// relative path written with backslashes names the same files here. Failures
// raise qv::Error with the runtime error numbers and texts: 53 File not
// found, 58 File already exists, 70 Permission denied, 75 Path/File access
// error, 76 Path not found. File names are taken literally (no wildcards).
//
// The host may install its own file system (an object of a derived class)
// for the whole process; the library reaches file operations through
// Current(). The naming rules are static and cannot be replaced.
// Threads: the installed file system is process-wide; installing and reading it
// take a lock (service_slot.h), so any thread may call Current(). The default
// file system keeps no state; a host's own one must be safe to call from the
// threads that use the library.
#ifndef QVGLOBAL_PLATFORM_FILE_SYSTEM_H_
#define QVGLOBAL_PLATFORM_FILE_SYSTEM_H_

#include <memory>
#include <string>
#include <string_view>

namespace qv::platform {

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Joins two path parts, inserting a separator only when neither part has
  // one at the join (a doubled separator is dropped). The separator is `\`
  // when `left` holds a backslash and no slash, else `/`. An empty part
  // adds nothing.
  static std::string BuildPath(std::string_view left, std::string_view right);
  // The last path component without its extension ("x.tar.gz" -> "x.tar").
  // Trailing separators are ignored.
  static std::string GetBaseName(std::string_view path);
  // What follows the last "." of the last component; "" without a ".".
  static std::string GetExtensionName(std::string_view path);
  // The last path component; "" for a root.
  static std::string GetFileName(std::string_view path);
  // The path without its last component and the separator before it; a
  // root stays a root ("/a" -> "/", "C:\P" -> "C:\"); "" when the path has
  // one component or is a root.
  static std::string GetParentFolderName(std::string_view path);
  // `path` as given to the operating system: every `\` becomes `/`.
  static std::string ToNativePath(std::string_view path);

  // True when `path` names an existing folder.
  virtual bool FolderExists(std::string_view path) const;
  // True when `path` names an existing file that is not a folder.
  virtual bool FileExists(std::string_view path) const;
  // Creates one folder; its parent must exist (76), it must not (58).
  virtual void CreateFolder(std::string_view path);
  // Deletes one file; a missing file or a folder raises 53.
  virtual void DeleteFile(std::string_view path);
  // Moves or renames one file. A destination ending in a separator names
  // the folder to move it into. An existing destination is never
  // overwritten (58).
  virtual void MoveFile(std::string_view source, std::string_view destination);

  // The file system in use: the installed one, else the real one.
  static std::shared_ptr<FileSystem> Current();
  // Installs `file_system` for the whole process; null restores the real
  // one.
  static void Install(std::shared_ptr<FileSystem> file_system);
  static void Reset();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_FILE_SYSTEM_H_
