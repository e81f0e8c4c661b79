// Compaction of a 25 MB project file (40,000 records of about 600
// characters, left from 60,000 of which a third were deleted), through the
// library (DbCatalog::Compact: file checks, progress reports,
// in-place VACUUM under the busy timeout) against SQLite's plain VACUUM of
// the same file through the C API. Both rebuild the whole file each time.
//
// The database is built once in /tmp/qvglobal_bench and reused.
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdint>
#include <string>

#include "bench_database.h"
#include "bench_ratio.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/internal/db_handle.h"

namespace {

using qv::ds::DbConnection;

constexpr int kRecords = 60000;

void Build(DbConnection& con) {
  qv::ds::DbCatalog(con).CreateTable(
      "notiz", {{"Nr", qv::ds::kAdInteger}, {"Text", qv::ds::kAdLongVarWChar}},
      {"Nr"});
  DbConnection::Transaction tx(con);
  SQLite::Statement insert(DbHandle(con), "INSERT INTO notiz VALUES (?, ?)");
  for (int i = 0; i < kRecords; ++i) {
    insert.bind(1, i);
    insert.bind(2,
                "Notiz " + std::string(600, static_cast<char>('a' + i % 26)));
    insert.exec();
    insert.reset();
  }
  con.Execute("DELETE FROM notiz WHERE Nr % 3 = 0");
  tx.Commit();
}

const std::string& Database() {
  static const std::string path = qv::bench::BenchDatabase(
      "compact.qv3",
      [](SQLite::Database& db) {
        return db.execAndGet("SELECT COUNT(*) FROM notiz").getInt() ==
               kRecords * 2 / 3;
      },
      Build);
  return path;
}

void BM_Compact(benchmark::State& state) {
  uint64_t reports = 0;
  for (auto _ : state) {
    qv::ds::DbCatalog::Compact(Database(),
                               [&reports](uint64_t, uint64_t) { ++reports; });
  }
  state.counters["reports"] =
      static_cast<double>(reports) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_Compact)->Unit(benchmark::kMillisecond);

void BM_PlainVacuum(benchmark::State& state) {
  for (auto _ : state) {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(Database().c_str(), &db, SQLITE_OPEN_READWRITE,
                        nullptr) != SQLITE_OK ||
        sqlite3_exec(db, "VACUUM", nullptr, nullptr, nullptr) != SQLITE_OK) {
      state.SkipWithError(sqlite3_errmsg(db));
    }
    sqlite3_close(db);
  }
}
BENCHMARK(BM_PlainVacuum)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  Database();  // built before any timing
  return qv::bench::RunWithRatio(argc, argv, "BM_Compact", "BM_PlainVacuum",
                                 "compaction/VACUUM", 1.2);
}
