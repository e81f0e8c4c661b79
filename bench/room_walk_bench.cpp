// Walks of the room hierarchy, 100 buildings x 10 storeys x 10 apartments x
// 10 rooms (100,000 rooms, text keys, "OrderNum" running against the key
// order), through the library, against three floors measured with SQLite's
// C API on the same file in the same order, one prepared statement per level
// (SELECT <keys> FROM <level>_t WHERE <parent keys> = ? ORDER BY "OrderNum"):
//
// - floor A: nested block reads inside one read transaction;
// - floor B: the same blocks, each read whole and its statement reset before
//   descending, so that the file's shared lock is taken per block;
// - floor C: four keyed lookups (one per level) per room, in one read
//   transaction per room.
//
// A walk paced by the caller (FirstRoom, then NextRoom) holds no lock
// between calls: its floor is B. NextRoom(True) re-positions at every room:
// floor C. SortOrderNumRooms walks inside one call: floor A; and it writes
// every room's new number, which SQLite alone makes cost several times the
// walk (each row's order-index entry moves), so floor W adds that write:
// floor A's walk, then one prepared UPDATE by the four keys per room, in the
// same transaction, on a fresh copy of the file as SortOrderNumRooms gets.
// Floor U is the write alone as one UPDATE statement, printed against floor
// A for reference.
//
// The database is built once in /tmp/qvglobal_bench and reused; it carries
// the order index that the library's table creation adds.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench_ratio.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"
#include "rooms/croom_iterator.h"
#include "rooms/room_ordering.h"
#include "testing/room_schema.h"

namespace {

using qv::ds::DbConnection;
using qv::ds::QvRecordset;
using Key = std::array<std::string, 4>;

constexpr int kRooms = 100 * 10 * 10 * 10;
constexpr char kDir[] = "/tmp/qvglobal_bench";
const char* const kNames[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};

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
    DbConnection con;
    if (!complete) {
      std::filesystem::create_directories(kDir);
      std::filesystem::remove(p);
      qv::testing::CreateRoomDatabase(con, p, {100, 10, 10, 10});
    } else {
      con.Open(DbConnection::MakeConnectionString(p));
    }
    qv::ds::DbCatalog catalog(con);
    std::vector<std::string> keys;
    for (const char* level : kNames) {
      keys.emplace_back(level);
      catalog.CreateOrderIndex(std::string(level) + "_t", keys);
    }
    return p;
  }();
  return path;
}

// ---------------------------------------------------------------------------
// Floors
// ---------------------------------------------------------------------------

sqlite3* OpenRaw() {
  sqlite3* db = nullptr;
  sqlite3_open_v2(Database().c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
  return db;
}

void Exec(sqlite3* db, const char* sql) {
  sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
}

std::string Text(sqlite3_stmt* st, int col) {
  return std::string(
      reinterpret_cast<const char*>(sqlite3_column_text(st, col)),
      static_cast<size_t>(sqlite3_column_bytes(st, col)));
}

// " WHERE "Gebaeude" = ?1 AND ..." over the first `keys` levels' keys.
std::string KeyCondition(int keys) {
  std::string where;
  for (int k = 0; k < keys; ++k) {
    where += (k == 0 ? " WHERE \"" : " AND \"") + std::string(kNames[k]) +
             "\" = ?" + std::to_string(k + 1);
  }
  return where;
}

// One level's statement: with `keyed` the record with all keys given,
// otherwise the records under the parent keys in "OrderNum" order.
class RawLevel {
 public:
  RawLevel(sqlite3* db, int level, bool keyed) : level_(level) {
    std::string columns;
    for (int k = 0; k <= level; ++k)
      columns += std::string(k > 0 ? ", \"" : "\"") + kNames[k] + "\"";
    const std::string sql = "SELECT " + columns + " FROM \"" + kNames[level] +
                            "_t\"" + KeyCondition(keyed ? level + 1 : level) +
                            " ORDER BY \"OrderNum\"";
    sqlite3_prepare_v2(db, sql.c_str(), -1, &st_, nullptr);
  }
  ~RawLevel() { sqlite3_finalize(st_); }

  // The keys of the records selected by the first `n` keys of `key`.
  const std::vector<Key>& Read(const Key& key, int n) {
    for (int k = 0; k < n; ++k) {
      sqlite3_bind_text(st_, k + 1, key[k].data(),
                        static_cast<int>(key[k].size()), SQLITE_STATIC);
    }
    records_.clear();
    while (sqlite3_step(st_) == SQLITE_ROW) {
      Key rec;
      for (int k = 0; k <= level_; ++k) rec[k] = Text(st_, k);
      records_.push_back(std::move(rec));
    }
    sqlite3_reset(st_);
    return records_;
  }

 private:
  int level_;
  sqlite3_stmt* st_ = nullptr;
  std::vector<Key> records_;
};

// Floors A and B: every room in walking order, each block copied out.
int64_t NestedWalk(sqlite3* db, std::vector<Key>* rooms = nullptr) {
  RawLevel g(db, 0, false), s(db, 1, false), w(db, 2, false), r(db, 3, false);
  int64_t count = 0;
  const std::vector<Key> buildings = g.Read(Key(), 0);
  for (const Key& building : buildings) {
    const std::vector<Key> storeys = s.Read(building, 1);
    for (const Key& storey : storeys) {
      const std::vector<Key> apartments = w.Read(storey, 2);
      for (const Key& apartment : apartments) {
        for (const Key& room : r.Read(apartment, 3)) {
          if (rooms) rooms->push_back(room);
          ++count;
        }
      }
    }
  }
  return count;
}

void BM_FloorA(benchmark::State& state) {
  sqlite3* db = OpenRaw();
  int64_t rooms = 0;
  for (auto _ : state) {
    Exec(db, "BEGIN");
    rooms = NestedWalk(db);
    Exec(db, "COMMIT");
  }
  state.counters["rooms"] = static_cast<double>(rooms);
  sqlite3_close(db);
}
BENCHMARK(BM_FloorA)->Unit(benchmark::kMillisecond);

void BM_FloorB(benchmark::State& state) {
  sqlite3* db = OpenRaw();
  int64_t rooms = 0;
  for (auto _ : state) rooms = NestedWalk(db);
  state.counters["rooms"] = static_cast<double>(rooms);
  sqlite3_close(db);
}
BENCHMARK(BM_FloorB)->Unit(benchmark::kMillisecond);

void BM_FloorC(benchmark::State& state) {
  sqlite3* db = OpenRaw();
  std::vector<Key> rooms;
  NestedWalk(db, &rooms);
  {
    std::array<std::unique_ptr<RawLevel>, 4> levels;
    for (int l = 0; l < 4; ++l)
      levels[l] = std::make_unique<RawLevel>(db, l, true);
    size_t found = 0;
    for (auto _ : state) {
      found = 0;
      for (const Key& room : rooms) {
        Exec(db, "BEGIN");
        for (int l = 0; l < 4; ++l)
          found += levels[l]->Read(room, l + 1).size();
        Exec(db, "COMMIT");
      }
    }
    state.counters["rooms"] = static_cast<double>(found / 4);
  }
  sqlite3_close(db);
}
BENCHMARK(BM_FloorC)->Unit(benchmark::kMillisecond);

// A fresh copy of the database for a benchmark that writes; make it with
// the timing paused.
std::string FreshCopy(const char* name) {
  const std::string copy = std::string(kDir) + "/" + name;
  std::filesystem::copy_file(Database(), copy,
                             std::filesystem::copy_options::overwrite_existing);
  return copy;
}

// Opens a fresh copy (see FreshCopy) for writing; `copy` receives its path.
sqlite3* OpenFreshCopy(const char* name, std::string* copy) {
  *copy = FreshCopy(name);
  sqlite3* db = nullptr;
  sqlite3_open_v2(copy->c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  return db;
}

// Writes the numbers 0, 1, 2 ... to the rooms' "OrderNum" in the given order.
int32_t WriteOrderNumbers(sqlite3* db, const std::vector<Key>& rooms) {
  const std::string sql =
      "UPDATE \"Raum_t\" SET \"OrderNum\" = ?5" + KeyCondition(4);
  sqlite3_stmt* st = nullptr;
  sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr);
  int32_t number = 0;
  for (const Key& room : rooms) {
    for (int k = 0; k < 4; ++k) {
      sqlite3_bind_text(st, k + 1, room[k].data(),
                        static_cast<int>(room[k].size()), SQLITE_STATIC);
    }
    sqlite3_bind_int(st, 5, number);
    if (sqlite3_step(st) == SQLITE_DONE) number += sqlite3_changes(db);
    sqlite3_reset(st);
  }
  sqlite3_finalize(st);
  return number;
}

void BM_FloorW(benchmark::State& state) {
  int32_t numbered = 0;
  std::string copy;
  for (auto _ : state) {
    state.PauseTiming();
    sqlite3* db = OpenFreshCopy("room_walk_floor_w.qv3", &copy);
    state.ResumeTiming();
    Exec(db, "BEGIN");
    std::vector<Key> rooms;
    NestedWalk(db, &rooms);
    numbered = WriteOrderNumbers(db, rooms);
    Exec(db, "COMMIT");
    state.PauseTiming();
    sqlite3_close(db);
    state.ResumeTiming();
  }
  std::filesystem::remove(copy);
  state.counters["rooms"] = numbered;
}
BENCHMARK(BM_FloorW)->Unit(benchmark::kMillisecond)->Iterations(3);

// Floor U: the least SQLite does to give every room a new number, one UPDATE
// of every row's "OrderNum" without any walk; set against floor A it shows
// what the write alone costs.
void BM_FloorU(benchmark::State& state) {
  std::string copy;
  for (auto _ : state) {
    state.PauseTiming();
    sqlite3* db = OpenFreshCopy("room_walk_floor_u.qv3", &copy);
    state.ResumeTiming();
    Exec(db, "UPDATE \"Raum_t\" SET \"OrderNum\" = \"OrderNum\" + 1");
    state.PauseTiming();
    state.counters["rooms"] = sqlite3_changes(db);
    sqlite3_close(db);
    state.ResumeTiming();
  }
  std::filesystem::remove(copy);
}
BENCHMARK(BM_FloorU)->Unit(benchmark::kMillisecond)->Iterations(3);

// ---------------------------------------------------------------------------
// The library
// ---------------------------------------------------------------------------

struct Tables {
  explicit Tables(const std::string& path)
      : con(std::make_shared<DbConnection>()) {
    con->Open(DbConnection::MakeConnectionString(path));
    for (const char* table : kNames) {
      levels.push_back(std::make_shared<QvRecordset>());
      levels.back()->openTable(con, table);
    }
  }
  std::shared_ptr<qv::CRoomIterator_t_> Iterator() const {
    auto it = std::make_shared<qv::CRoomIterator_t_>();
    it->init(levels[0], levels[1], levels[2], levels[3]);
    return it;
  }
  std::shared_ptr<DbConnection> con;
  std::vector<std::shared_ptr<QvRecordset>> levels;
};

void BM_IteratorWalk(benchmark::State& state, bool reread) {
  Tables tables(Database());
  auto it = tables.Iterator();
  int64_t rooms = 0;
  size_t checksum = 0;
  for (auto _ : state) {
    rooms = 0;
    for (bool ok = it->FirstRoom(); ok; ok = it->NextRoom(reread)) {
      checksum += it->Raum().size();
      ++rooms;
    }
  }
  state.counters["rooms"] = static_cast<double>(rooms);
  benchmark::DoNotOptimize(checksum);
}
BENCHMARK_CAPTURE(BM_IteratorWalk, NextRoom, false)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_IteratorWalk, NextRoomReRead, true)
    ->Unit(benchmark::kMillisecond);

// The record sets walked directly, parent to child, for comparison.
void BM_RecordsetWalk(benchmark::State& state) {
  Tables tables(Database());
  QvRecordset &g = *tables.levels[0], &s = *tables.levels[1],
              &w = *tables.levels[2], &r = *tables.levels[3];
  g.addChild(tables.levels[1]);
  s.addChild(tables.levels[2]);
  w.addChild(tables.levels[3]);
  int64_t rooms = 0;
  for (auto _ : state) {
    rooms = 0;
    for (g.moveFirst(); !g.isEOF(); g.moveNext())
      for (s.moveFirst(); !s.isEOF(); s.moveNext())
        for (w.moveFirst(); !w.isEOF(); w.moveNext())
          for (r.moveFirst(); !r.isEOF(); r.moveNext()) ++rooms;
  }
  state.counters["rooms"] = static_cast<double>(rooms);
}
BENCHMARK(BM_RecordsetWalk)->Unit(benchmark::kMillisecond);

// Every iteration numbers a fresh copy of the file, whose rooms all change
// their number, so the timed call writes 100,000 rows.
void BM_SortOrderNumRooms(benchmark::State& state) {
  int32_t numbered = 0;
  std::string copy;
  for (auto _ : state) {
    state.PauseTiming();
    copy = FreshCopy("room_walk_renumber.qv3");
    {
      Tables tables(copy);
      auto all = std::make_shared<QvRecordset>();
      all->openTable(tables.con, "Raum");
      qv::ds::QvDs rooms;
      rooms.loadFromRecordset(
          all, {"Gebaeude", "Stock", "Wohnung", "Raum", "OrderNum"});
      state.ResumeTiming();
      numbered = qv::NumberRoomsInWalkingOrder(
          rooms, tables.levels[0], tables.levels[1], tables.levels[2],
          tables.levels[3]);
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  std::filesystem::remove(copy);
  state.counters["rooms"] = numbered;
}
BENCHMARK(BM_SortOrderNumRooms)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
  Database();  // built before any timing
  return qv::bench::RunWithRatios(
      argc, argv,
      {{"BM_IteratorWalk/NextRoom", "BM_FloorB", "iterator walk/floor B", 1.5},
       {"BM_IteratorWalk/NextRoomReRead", "BM_FloorC",
        "NextRoom(True) walk/floor C", 2},
       {"BM_SortOrderNumRooms/iterations:3", "BM_FloorA",
        "SortOrderNumRooms/floor A", 3},
       {"BM_SortOrderNumRooms/iterations:3", "BM_FloorW",
        "SortOrderNumRooms/floor W", 2},
       {"BM_FloorU/iterations:3", "BM_FloorA", "floor U/floor A", 0},
       {"BM_RecordsetWalk", "BM_FloorB", "record-set walk/floor B", 1.5}});
}
