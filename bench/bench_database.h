// Shared by the benchmarks that need a database of their own: the file is
// built once in /tmp/qvglobal_bench and reused by later runs for as long as
// it is complete, since building it takes longer than measuring.
#ifndef QVGLOBAL_BENCH_BENCH_DATABASE_H_
#define QVGLOBAL_BENCH_BENCH_DATABASE_H_

#include <SQLiteCpp/Database.h>

#include <exception>
#include <filesystem>
#include <functional>
#include <string>

#include "datasource/db_connection.h"

namespace qv::bench {

// The path of /tmp/qvglobal_bench/<file>. When `complete` (asked of the
// file opened for reading) says no, or cannot be asked, the file is made
// anew as an empty project database and handed to `build`.
inline std::string BenchDatabase(
    const std::string& file,
    const std::function<bool(SQLite::Database&)>& complete,
    const std::function<void(ds::DbConnection&)>& build) {
  const std::string dir = "/tmp/qvglobal_bench";
  const std::string path = dir + "/" + file;
  try {
    SQLite::Database db(path, SQLite::OPEN_READONLY);
    if (complete(db)) return path;
  } catch (const std::exception&) {
  }
  std::filesystem::create_directories(dir);
  std::filesystem::remove(path);
  ds::DbConnection::CreateDatabase(path);
  ds::DbConnection con;
  con.Open(ds::DbConnection::MakeConnectionString(path));
  build(con);
  return path;
}

}  // namespace qv::bench

#endif  // QVGLOBAL_BENCH_BENCH_DATABASE_H_
