#include "datasource/internal/db_compact.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <system_error>

#include "com/error.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/internal/connection_string.h"

namespace qv::ds {
namespace {

namespace fs = std::filesystem;

// Engine steps between two progress reports.
constexpr int kProgressSteps = 500;

Error CompactError(const std::string& path, const std::string& reason) {
  return Error(dberr::kCompact, "DbCatalog.Compact",
               "compacting '" + path + "' failed: " + reason);
}

struct ProgressState {
  sqlite3* db;
  uint64_t page_size;
  uint64_t total;
  const std::function<void(uint64_t, uint64_t)>* report;
  std::exception_ptr error;
};

// The engine reads every page of the file once while it rebuilds it; the
// pages read so far (cache misses of this fresh connection) measure the
// progress.
uint64_t BytesRead(const ProgressState& state) {
  int current = 0, highest = 0;
  sqlite3_db_status(state.db, SQLITE_DBSTATUS_CACHE_MISS, &current, &highest,
                    0);
  return std::min(state.total, static_cast<uint64_t>(std::max(current, 0)) *
                                   state.page_size);
}

int OnProgress(void* data) {
  auto* state = static_cast<ProgressState*>(data);
  try {
    (*state->report)(BytesRead(*state), state->total);
  } catch (...) {
    state->error = std::current_exception();
    return 1;  // interrupts the engine, which rolls the rebuild back
  }
  return 0;
}

// VACUUM takes the write lock (waiting up to the busy timeout for other
// writers), rebuilds the database in a temporary store and copies it back
// through the rollback journal before it releases the lock.
void VacuumInPlace(const std::string& path, ProgressState& state) {
  SQLite::Database db(path, SQLite::OPEN_READWRITE,
                      DbConnection::BusyTimeoutMs());
  db.exec("PRAGMA journal_mode=DELETE");
  db.exec("PRAGMA synchronous=FULL");
  state.db = db.getHandle();
  state.page_size =
      static_cast<uint64_t>(db.execAndGet("PRAGMA page_size").getInt64());
  if (*state.report)
    sqlite3_progress_handler(state.db, kProgressSteps, &OnProgress, &state);
  db.exec("VACUUM");
  sqlite3_progress_handler(state.db, 0, nullptr, nullptr);
}

}  // namespace

void CompactDatabaseFile(const std::string& path,
                         std::function<void(uint64_t, uint64_t)> progress) {
  const std::optional<std::string> found = FindPathIgnoringCase(path);
  std::error_code ec;
  if (!found || !fs::is_regular_file(*found, ec)) {
    throw CompactError(path, "database file not found");
  }
  ProgressState state{nullptr,
                      0,
                      static_cast<uint64_t>(fs::file_size(*found, ec)),
                      &progress,
                      {}};
  try {
    VacuumInPlace(*found, state);
  } catch (...) {
    if (state.error) std::rethrow_exception(state.error);
    try {
      throw;
    } catch (const Error& e) {
      throw CompactError(path, e.description());
    } catch (const std::exception& e) {
      throw CompactError(path, e.what());
    }
  }
  if (progress) progress(state.total, state.total);
}

}  // namespace qv::ds
