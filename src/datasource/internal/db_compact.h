// Compacting a database file: the engine writes a compact copy of the
// database to a temporary file, which is flushed to disk and renamed over
// the original, so that a crash leaves either the old file or the new one.
// Internal to src/datasource/ (DbCatalog::Compact is the public entry).
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_

#include <cstdint>
#include <functional>
#include <string>

namespace qv::ds {

// See DbCatalog::Compact. Errors: kCompact "compacting '<path>' failed:
// <reason>"; an exception thrown by `progress` stops the work and passes
// through unchanged. The file must not be open on another connection.
// After success `progress` is called once more with (total, total).
void CompactDatabaseFile(
    const std::string& path, const std::string& temp_path,
    std::function<void(uint64_t written, uint64_t total)> progress);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_DB_COMPACT_H_
