#include "datasource/internal/db_compact.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <filesystem>
#include <system_error>

#include "com/error.h"
#include "datasource/db_connection.h"
#include "datasource/db_error.h"
#include "datasource/internal/connection_string.h"
#include "platform/file_system.h"

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
  const std::string* temp;
  uint64_t total;
  const std::function<void(uint64_t, uint64_t)>* report;
  std::exception_ptr error;
};

int OnProgress(void* data) {
  auto* state = static_cast<ProgressState*>(data);
  std::error_code ec;
  const uintmax_t written = fs::file_size(*state->temp, ec);
  try {
    (*state->report)(ec ? 0 : written, state->total);
  } catch (...) {
    state->error = std::current_exception();
    return 1;  // interrupts the engine
  }
  return 0;
}

// Flushes a file or folder to disk.
void Sync(const std::string& path, int flags) {
  const int fd = ::open(path.c_str(), flags);
  if (fd < 0 || ::fsync(fd) != 0) {
    const std::string reason = std::strerror(errno);
    if (fd >= 0) ::close(fd);
    throw std::runtime_error("cannot flush '" + path + "': " + reason);
  }
  ::close(fd);
}

void WriteCompactCopy(const std::string& path, const std::string& temp,
                      ProgressState& state) {
  SQLite::Database db(path, SQLite::OPEN_READWRITE,
                      DbConnection::BusyTimeoutMs());
  if (*state.report)
    sqlite3_progress_handler(db.getHandle(), kProgressSteps, &OnProgress,
                             &state);
  SQLite::Statement vacuum(db, "VACUUM INTO ?1");
  vacuum.bind(1, temp);
  vacuum.exec();
  sqlite3_progress_handler(db.getHandle(), 0, nullptr, nullptr);
}

}  // namespace

void CompactDatabaseFile(const std::string& path, const std::string& temp_path,
                         std::function<void(uint64_t, uint64_t)> progress) {
  const std::optional<std::string> found = FindPathIgnoringCase(path);
  std::error_code ec;
  if (!found || !fs::is_regular_file(*found, ec)) {
    throw CompactError(path, "database file not found");
  }
  const std::string temp = platform::FileSystem::ToNativePath(temp_path);
  if (fs::exists(temp, ec) && fs::equivalent(temp, *found, ec)) {
    throw CompactError(path, "the temporary file is the database itself");
  }
  if (fs::remove(temp, ec); ec)
    throw CompactError(path, "cannot remove '" + temp + "'");
  ProgressState state{
      &temp, static_cast<uint64_t>(fs::file_size(*found, ec)), &progress, {}};
  try {
    WriteCompactCopy(*found, temp, state);
    Sync(temp, O_RDWR);
    fs::rename(temp, *found);
  } catch (...) {
    fs::remove(temp, ec);
    if (state.error) std::rethrow_exception(state.error);
    try {
      throw;
    } catch (const Error& e) {
      throw CompactError(path, e.description());
    } catch (const std::exception& e) {
      throw CompactError(path, e.what());
    }
  }
  // Make the rename itself durable; the new file is in place either way.
  const fs::path folder = fs::path(*found).parent_path();
  try {
    Sync(folder.empty() ? "." : folder.string(), O_RDONLY);
  } catch (const std::exception&) {
  }
  if (progress) progress(state.total, state.total);
}

}  // namespace qv::ds
