// 20,000 new records in one transaction: through QvRecordset::insertRecord
// (values set by field name, key and data row written, the block marked for
// reading again) against two prepared INSERT statements into the same two
// tables through SQLite's C API. Between iterations, outside the timing,
// the tables are emptied again.
//
// The database's tables are made once in /tmp/qvglobal_bench and reused.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

#include "bench_database.h"
#include "bench_ratio.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"

namespace {

using qv::Variant;
using qv::ds::DbConnection;

constexpr int kInserts = 20000;
constexpr int kPerGroup = 100;

std::string Name(int i) { return "Ergebnis " + std::to_string(i); }

void Build(DbConnection& con) {
  using qv::ds::ColumnDef;
  const std::vector<ColumnDef> keys{{"Gruppe", qv::ds::kAdInteger},
                                    {"Nr", qv::ds::kAdInteger}};
  std::vector<ColumnDef> key_table = keys, data_table = keys;
  key_table.push_back({"OtherFields", qv::ds::kAdLongVarBinary});
  data_table.push_back({"Name", qv::ds::kAdVarWChar, 50});
  data_table.push_back({"Wert", qv::ds::kAdDouble});
  qv::ds::DbCatalog catalog(con);
  catalog.CreateTable("ergebnis", key_table, {"Gruppe", "Nr"});
  catalog.CreateTable("ergebnis_t", data_table, {"Gruppe", "Nr"});
}

const std::string& Database() {
  static const std::string path = qv::bench::BenchDatabase(
      "insert.qv3",
      [](SQLite::Database& db) {
        return db.execAndGet("SELECT COUNT(*) FROM ergebnis").getInt() == 0;
      },
      Build);
  return path;
}

void Empty(DbConnection& con) {
  con.Execute("DELETE FROM ergebnis_t");
  con.Execute("DELETE FROM ergebnis");
}

void BM_RecordsetInserts(benchmark::State& state) {
  auto con = std::make_shared<DbConnection>();
  con->Open(DbConnection::MakeConnectionString(Database()));
  auto rs = std::make_shared<qv::ds::QvRecordset>();
  if (!rs->openTable(con, "ergebnis")) {
    state.SkipWithError("cannot open ergebnis");
    return;
  }
  for (auto _ : state) {
    con->BeginTrans();
    for (int i = 0; i < kInserts; ++i) {
      rs->clearVars();
      rs->setValue("Gruppe", Variant(int32_t{i / kPerGroup}));
      rs->setValue("Nr", Variant(int32_t{i % kPerGroup}));
      rs->setValue("Name", Variant(Name(i)));
      rs->setValue("Wert", Variant(i * 0.5));
      rs->insertRecord();
    }
    con->CommitTrans();
    state.PauseTiming();
    Empty(*con);
    state.ResumeTiming();
  }
}
BENCHMARK(BM_RecordsetInserts)->Unit(benchmark::kMillisecond);

void BM_RawInserts(benchmark::State& state) {
  DbConnection con;  // for emptying the tables only
  con.Open(DbConnection::MakeConnectionString(Database()));
  sqlite3* db = nullptr;
  sqlite3_open_v2(Database().c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_stmt* key_row = nullptr;
  sqlite3_stmt* data_row = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO ergebnis VALUES (?, ?, NULL)", -1,
                     &key_row, nullptr);
  sqlite3_prepare_v2(db, "INSERT INTO ergebnis_t VALUES (?, ?, ?, ?)", -1,
                     &data_row, nullptr);
  for (auto _ : state) {
    sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    for (int i = 0; i < kInserts; ++i) {
      const std::string name = Name(i);
      sqlite3_bind_int(key_row, 1, i / kPerGroup);
      sqlite3_bind_int(key_row, 2, i % kPerGroup);
      sqlite3_step(key_row);
      sqlite3_reset(key_row);
      sqlite3_bind_int(data_row, 1, i / kPerGroup);
      sqlite3_bind_int(data_row, 2, i % kPerGroup);
      sqlite3_bind_text(data_row, 3, name.data(), static_cast<int>(name.size()),
                        SQLITE_TRANSIENT);
      sqlite3_bind_double(data_row, 4, i * 0.5);
      sqlite3_step(data_row);
      sqlite3_reset(data_row);
    }
    if (sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK)
      state.SkipWithError(sqlite3_errmsg(db));
    state.PauseTiming();
    Empty(con);
    state.ResumeTiming();
  }
  sqlite3_finalize(key_row);
  sqlite3_finalize(data_row);
  sqlite3_close(db);
}
BENCHMARK(BM_RawInserts)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  Database();  // built before any timing
  return qv::bench::RunWithRatio(argc, argv, "BM_RecordsetInserts",
                                 "BM_RawInserts", "inserts/raw", 3);
}
