// FileId names a file by what it is, not by how its path is spelled: the
// device and inode number. Two spellings of one file (letter case, "..",
// symbolic or hard links) give one FileId, two different files never do.
//
// OpenFiles counts, for the whole process, the database connections open on
// each file, so that an operation on the whole file (compaction) can refuse
// a file that is still in use here. DbConnection keeps the counts.
// Threads: OpenFiles may be used from any thread (one lock guards the
// counts); FileId is a plain value.
#ifndef QVGLOBAL_DATASOURCE_OPEN_FILES_H_
#define QVGLOBAL_DATASOURCE_OPEN_FILES_H_

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace qv::ds {

struct FileId {
  uint64_t device = 0;
  uint64_t inode = 0;

  // The file `path` names (following symbolic links); nullopt when there is
  // none.
  static std::optional<FileId> Of(const std::string& path);
  // The same for a path that, where it does not exist as written, is looked
  // up without regard to letter case (as DbConnection::Open does).
  static std::optional<FileId> Resolve(const std::string& path);
  // "device:inode", a key for dictionaries.
  std::string Key() const;
  auto operator<=>(const FileId&) const = default;
};

class OpenFiles {
 public:
  static void Add(const FileId& file);
  static void Remove(const FileId& file);
  // Connections of this process open on `file`.
  static int Count(const FileId& file);
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_OPEN_FILES_H_
