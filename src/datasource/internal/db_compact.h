// Compacting a database file in place: the engine rebuilds the database and
// writes it back into the same file under its own locking and rollback
// journal. The file keeps its inode, permissions, owner and links; other
// processes' connections keep working and see the compacted content; a
// crash leaves the old content or the new one, complete.
// Internal to src/datasource/ (DbCatalog::Compact is the public entry).
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_

#include <cstdint>
#include <functional>
#include <string>

namespace qv::ds {

// See DbCatalog::Compact. Errors: kCompact "compacting '<path>' failed:
// <reason>"; an exception thrown by `progress` stops the work, leaves the
// file as it was and passes through unchanged.
void CompactDatabaseFile(
    const std::string& path,
    std::function<void(uint64_t read, uint64_t total)> progress);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_
