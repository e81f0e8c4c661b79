// readBlock by two leading keys on a table of 1,000,000 records (a key/data
// pair: 100 projects x 100 groups x 100 numbers), against the same query
// through SQLite's C API with a prepared statement. Both sides bind the two
// keys, step every row of the block and keep all its values (the record set
// as variants, the raw side as plain values in a vector of structs).
//
// The database is built once in /tmp/qvglobal_bench and reused.
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench_ratio.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/internal/db_handle.h"
#include "datasource/qv_recordset.h"

namespace {

using qv::Variant;
using qv::ds::DbConnection;

constexpr int kPerLevel = 100;
constexpr char kDir[] = "/tmp/qvglobal_bench";
constexpr char kSelect[] =
    "SELECT \"Projekt\", \"Gruppe\", \"Nr\", \"Name\", \"Wert\", \"Anzahl\" "
    "FROM \"messwert_t\" "
    "WHERE \"Projekt\" = ?1 AND \"Gruppe\" = ?2 ORDER BY \"Projekt\", "
    "\"Gruppe\", \"Nr\"";

std::string DbPath() { return std::string(kDir) + "/read_block.qv3"; }

std::string Projekt(int p) {
  char text[8];
  std::snprintf(text, sizeof text, "P%03d", p);
  return text;
}

bool DatabaseIsComplete(const std::string& path) {
  if (!std::filesystem::exists(path)) return false;
  try {
    SQLite::Database db(path, SQLite::OPEN_READONLY);
    return db.execAndGet("SELECT COUNT(*) FROM messwert_t").getInt() ==
               kPerLevel * kPerLevel * kPerLevel &&
           db.execAndGet("SELECT COUNT(*) FROM messwert").getInt() ==
               kPerLevel * kPerLevel * kPerLevel;
  } catch (const std::exception&) {
    return false;
  }
}

void BuildDatabase(const std::string& path) {
  std::filesystem::create_directories(kDir);
  std::filesystem::remove(path);
  DbConnection::CreateDatabase(path);
  DbConnection con;
  con.Open(DbConnection::MakeConnectionString(path));
  using qv::ds::ColumnDef;
  const std::vector<ColumnDef> keys{{"Projekt", qv::ds::kAdVarWChar, 20},
                                    {"Gruppe", qv::ds::kAdInteger},
                                    {"Nr", qv::ds::kAdInteger}};
  std::vector<ColumnDef> key_table = keys, data_table = keys;
  key_table.push_back({"OtherFields", qv::ds::kAdLongVarBinary});
  data_table.insert(data_table.end(), {{"Name", qv::ds::kAdVarWChar, 50},
                                       {"Wert", qv::ds::kAdDouble},
                                       {"Anzahl", qv::ds::kAdInteger}});
  qv::ds::DbCatalog catalog(con);
  catalog.CreateTable("messwert", key_table, {"Projekt", "Gruppe", "Nr"});
  catalog.CreateTable("messwert_t", data_table, {"Projekt", "Gruppe", "Nr"});
  DbConnection::Transaction tx(con);
  SQLite::Statement key_row(DbHandle(con),
                            "INSERT INTO messwert VALUES (?, ?, ?, NULL)");
  SQLite::Statement data_row(
      DbHandle(con), "INSERT INTO messwert_t VALUES (?, ?, ?, ?, ?, ?)");
  for (int p = 1; p <= kPerLevel; ++p) {
    const std::string projekt = Projekt(p);
    for (int g = 1; g <= kPerLevel; ++g) {
      for (int n = 1; n <= kPerLevel; ++n) {
        key_row.bind(1, projekt);
        key_row.bind(2, g);
        key_row.bind(3, n);
        key_row.exec();
        key_row.reset();
        data_row.bind(1, projekt);
        data_row.bind(2, g);
        data_row.bind(3, n);
        data_row.bind(4, "Messung " + projekt + "/" + std::to_string(g) + "/" +
                             std::to_string(n));
        data_row.bind(5, p * 0.5 + g * 0.25 + n);
        data_row.bind(6, p + g + n);
        data_row.exec();
        data_row.reset();
      }
    }
  }
  tx.Commit();
}

const std::string& Database() {
  static const std::string path = [] {
    const std::string p = DbPath();
    if (!DatabaseIsComplete(p)) BuildDatabase(p);
    return p;
  }();
  return path;
}

// The keys of the i-th block read: spread over the whole table.
std::pair<std::string, int> BlockKeys(int64_t i) {
  return {Projekt(static_cast<int>((i * 37) % kPerLevel) + 1),
          static_cast<int>((i * 61) % kPerLevel) + 1};
}

void BM_ReadBlock(benchmark::State& state) {
  auto con = std::make_shared<DbConnection>();
  con->Open(DbConnection::MakeConnectionString(Database()));
  auto rs = std::make_shared<qv::ds::QvRecordset>();
  if (!rs->openTable(con, "messwert")) {
    state.SkipWithError("cannot open messwert");
    return;
  }
  int64_t i = 0, rows = 0;
  for (auto _ : state) {
    const auto [projekt, gruppe] = BlockKeys(i++);
    rs->setFieldValue(0, Variant(projekt));
    rs->setFieldValue(1, Variant(int32_t{gruppe}));
    rs->readBlock(2, true);
    rows += rs->getRecordCount();
  }
  state.counters["rows/block"] =
      static_cast<double>(rows) / static_cast<double>(i);
}
BENCHMARK(BM_ReadBlock)->Unit(benchmark::kMicrosecond);

struct Row {
  std::string projekt;
  int32_t gruppe = 0, nr = 0;
  std::string name;
  double wert = 0;
  int32_t anzahl = 0;
};

std::string Text(sqlite3_stmt* st, int col) {
  return std::string(
      reinterpret_cast<const char*>(sqlite3_column_text(st, col)),
      static_cast<size_t>(sqlite3_column_bytes(st, col)));
}

void BM_RawBlock(benchmark::State& state) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(Database().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  sqlite3_stmt* st = nullptr;
  if (sqlite3_prepare_v2(db, kSelect, -1, &st, nullptr) != SQLITE_OK) {
    state.SkipWithError(sqlite3_errmsg(db));
    sqlite3_close(db);
    return;
  }
  std::vector<Row> rows;
  int64_t i = 0, total = 0;
  for (auto _ : state) {
    const auto [projekt, gruppe] = BlockKeys(i++);
    sqlite3_bind_text(st, 1, projekt.data(), static_cast<int>(projekt.size()),
                      SQLITE_TRANSIENT);
    sqlite3_bind_int(st, 2, gruppe);
    rows.clear();
    while (sqlite3_step(st) == SQLITE_ROW) {
      Row r;
      r.projekt = Text(st, 0);
      r.gruppe = sqlite3_column_int(st, 1);
      r.nr = sqlite3_column_int(st, 2);
      r.name = Text(st, 3);
      r.wert = sqlite3_column_double(st, 4);
      r.anzahl = sqlite3_column_int(st, 5);
      rows.push_back(std::move(r));
    }
    sqlite3_reset(st);
    total += static_cast<int64_t>(rows.size());
    benchmark::DoNotOptimize(rows.data());
  }
  state.counters["rows/block"] =
      static_cast<double>(total) / static_cast<double>(i);
  sqlite3_finalize(st);
  sqlite3_close(db);
}
BENCHMARK(BM_RawBlock)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  Database();  // built before any timing
  return qv::bench::RunWithRatio(argc, argv, "BM_ReadBlock", "BM_RawBlock",
                                 "readBlock/raw", 2);
}
