// OpenFiles counts, for the whole process, the database connections open on
// each file, so that an operation on the whole file (compaction, which
// replaces it) can refuse a file that is still in use. DbConnection keeps
// the counts; files are identified by their canonical path.
// Threads: the counts are process-wide and guarded by one mutex; every function
// may be called from any thread.
#ifndef QVGLOBAL_DATASOURCE_OPEN_FILES_H_
#define QVGLOBAL_DATASOURCE_OPEN_FILES_H_

#include <string>

namespace qv::ds {

class OpenFiles {
 public:
  static void Add(const std::string& path);
  static void Remove(const std::string& path);
  // Connections of this process open on the file at `path`.
  static int Count(const std::string& path);
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_OPEN_FILES_H_
