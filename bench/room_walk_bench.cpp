// A full walk of the room hierarchy, 100 buildings x 10 storeys x 10
// apartments x 10 rooms (100,000 rooms), in "OrderNum" order: through four
// linked record sets (moving a parent narrows its child, which is read at
// its next use), against the same walk through SQLite's C API with one
// prepared query per parent. Both sides read all fields of every record of
// every level and keep them (variants; plain values in structs), and read
// the room key of every room.
//
// The database is built once in /tmp/qvglobal_bench and reused.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench_ratio.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/room_schema.h"
#include "testing/temp_dir.h"
// The bench targets compile one source each: the shared fixture that builds
// the room tables is compiled in here.

namespace {

using qv::Variant;
using qv::ds::DbConnection;
using qv::ds::QvRecordset;

constexpr int kRooms = 100 * 10 * 10 * 10;
constexpr char kDir[] = "/tmp/qvglobal_bench";

int Count(sqlite3* db, const char* sql) {
  sqlite3_stmt* st = nullptr;
  int n = -1;
  if (sqlite3_prepare_v2(db, sql, -1, &st, nullptr) == SQLITE_OK &&
      sqlite3_step(st) == SQLITE_ROW) {
    n = sqlite3_column_int(st, 0);
  }
  sqlite3_finalize(st);
  return n;
}

const std::string& Database() {
  static const std::string path = [] {
    const std::string p = std::string(kDir) + "/room_walk.qv3";
    sqlite3* db = nullptr;
    bool complete = false;
    if (std::filesystem::exists(p) &&
        sqlite3_open_v2(p.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) ==
            SQLITE_OK) {
      complete = Count(db, "SELECT COUNT(*) FROM Raum_t") == kRooms &&
                 Count(db, "SELECT COUNT(*) FROM Raum") == kRooms;
    }
    sqlite3_close(db);
    if (!complete) {
      std::filesystem::create_directories(kDir);
      std::filesystem::remove(p);
      DbConnection con;
      qv::testing::CreateRoomDatabase(con, p, {100, 10, 10, 10});
    }
    return p;
  }();
  return path;
}

void BM_RecordsetWalk(benchmark::State& state) {
  auto con = std::make_shared<DbConnection>();
  con->Open(DbConnection::MakeConnectionString(Database()));
  std::vector<std::shared_ptr<QvRecordset>> levels;
  for (const char* table : {"gebaeude", "stock", "wohnung", "raum"}) {
    levels.push_back(std::make_shared<QvRecordset>());
    if (!levels.back()->openTable(con, table)) {
      state.SkipWithError("cannot open the room tables");
      return;
    }
    if (levels.size() > 1) levels[levels.size() - 2]->addChild(levels.back());
  }
  QvRecordset &g = *levels[0], &s = *levels[1], &w = *levels[2],
              &r = *levels[3];
  int64_t rooms = 0;
  size_t checksum = 0;
  for (auto _ : state) {
    for (g.moveFirst(); !g.isEOF(); g.moveNext()) {
      for (s.moveFirst(); !s.isEOF(); s.moveNext()) {
        for (w.moveFirst(); !w.isEOF(); w.moveNext()) {
          for (r.moveFirst(); !r.isEOF(); r.moveNext()) {
            const Variant key = r.getValue("Raum");
            checksum += key.AsString()->size();
            ++rooms;
          }
        }
      }
    }
  }
  state.counters["rooms/walk"] =
      static_cast<double>(rooms) / static_cast<double>(state.iterations());
  benchmark::DoNotOptimize(checksum);
}
BENCHMARK(BM_RecordsetWalk)->Unit(benchmark::kMillisecond);

// One record of a level, as plain values.
struct Record {
  std::array<std::string, 4> keys;
  int order_num = 0;
  std::string label;
};

class RawLevel {
 public:
  RawLevel(sqlite3* db, int level) : level_(level) {
    static const char* const kNames[] = {"Gebaeude", "Stock", "Wohnung",
                                         "Raum"};
    std::string columns, where, order = "\"OrderNum\"";
    for (int k = 0; k <= level; ++k) {
      columns += std::string("\"") + kNames[k] + "\", ";
      order += std::string(", \"") + kNames[k] + "\"";
      if (k < level) {
        where += (k == 0 ? " WHERE \"" : " AND \"") + std::string(kNames[k]) +
                 "\" = ?" + std::to_string(k + 1);
      }
    }
    const std::string sql =
        "SELECT " + columns + "\"OrderNum\", \"Bezeichnung\" FROM \"" +
        kNames[level] + "_t\"" + where + " ORDER BY " + order;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &st_, nullptr);
  }
  ~RawLevel() { sqlite3_finalize(st_); }

  // The records under `parent` (all for the top level), in block order.
  const std::vector<Record>& Read(const Record* parent) {
    for (int k = 0; k < level_; ++k) {
      const std::string& key = parent->keys[k];
      sqlite3_bind_text(st_, k + 1, key.data(), static_cast<int>(key.size()),
                        SQLITE_STATIC);
    }
    records_.clear();
    while (sqlite3_step(st_) == SQLITE_ROW) {
      Record rec;
      for (int k = 0; k <= level_; ++k) rec.keys[k] = Text(k);
      rec.order_num = sqlite3_column_int(st_, level_ + 1);
      rec.label = Text(level_ + 2);
      records_.push_back(std::move(rec));
    }
    sqlite3_reset(st_);
    return records_;
  }

 private:
  std::string Text(int col) {
    return std::string(
        reinterpret_cast<const char*>(sqlite3_column_text(st_, col)),
        static_cast<size_t>(sqlite3_column_bytes(st_, col)));
  }

  int level_;
  sqlite3_stmt* st_ = nullptr;
  std::vector<Record> records_;
};

void BM_RawWalk(benchmark::State& state) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(Database().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  {
    RawLevel g(db, 0), s(db, 1), w(db, 2), r(db, 3);
    int64_t rooms = 0;
    size_t checksum = 0;
    for (auto _ : state) {
      for (const Record& building : g.Read(nullptr)) {
        for (const Record& storey : s.Read(&building)) {
          for (const Record& apartment : w.Read(&storey)) {
            for (const Record& room : r.Read(&apartment)) {
              checksum += room.keys[3].size();
              ++rooms;
            }
          }
        }
      }
    }
    state.counters["rooms/walk"] =
        static_cast<double>(rooms) / static_cast<double>(state.iterations());
    benchmark::DoNotOptimize(checksum);
  }
  sqlite3_close(db);
}
BENCHMARK(BM_RawWalk)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  Database();  // built before any timing
  return qv::bench::RunWithRatio(argc, argv, "BM_RecordsetWalk", "BM_RawWalk",
                                 "room walk/raw", 3);
}
