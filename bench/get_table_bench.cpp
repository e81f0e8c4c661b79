// Measures the cached path of CQvConnection::getTable for a name that needs
// trimming and lower-casing against a plain hash-map lookup of the already
// normalised name, and prints the ratio of the two; and, for reference, the
// same with two names in turn, where getTable folds and hashes every name.
#include <benchmark/benchmark.h>
#include <fmt/core.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <unordered_map>

#include "bench_ratio.h"
#include "com/safe_array.h"
#include "data/cqv_connection.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"

namespace {

namespace fs = std::filesystem;

// A database with the table "raum" in a fresh temporary folder.
class BenchDatabase {
 public:
  BenchDatabase()
      : folder_(fs::temp_directory_path() /
                ("qv_get_table_bench_" + std::to_string(::getpid()))) {
    fs::create_directories(folder_);
    const std::string path = (folder_ / "bench.qv3").string();
    qv::ds::DbConnection::CreateDatabase(path);
    connection_ = std::make_shared<qv::CQvConnection>();
    connection_->m_conConnection->Open(
        qv::ds::DbConnection::MakeConnectionString(path));
    connection_->addTable("raum", 1,
                          qv::Variant(qv::SafeArray{"Raum", 202, 20}),
                          qv::Variant(qv::SafeArray{"Flaeche", 5}), false);
    raum_ = connection_->getTable("raum");
  }
  ~BenchDatabase() {
    raum_.reset();
    connection_.reset();
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  qv::CQvConnection& connection() { return *connection_; }
  const std::shared_ptr<qv::ds::QvRecordset>& raum() const { return raum_; }

 private:
  fs::path folder_;
  std::shared_ptr<qv::CQvConnection> connection_;
  std::shared_ptr<qv::ds::QvRecordset> raum_;
};

BenchDatabase& Database() {
  static BenchDatabase database;
  return database;
}

void BM_GetTableCached(benchmark::State& state) {
  qv::CQvConnection& connection = Database().connection();
  const std::string name = "  Raum ";
  for (auto _ : state) {
    benchmark::DoNotOptimize(connection.getTable(name));
  }
}
BENCHMARK(BM_GetTableCached)->Apply(qv::bench::FixedIterationsFromEnv);

// Two names in turn, so that no call finds the previous call's name: the
// path that folds and hashes every name.
void BM_GetTableTwoNames(benchmark::State& state) {
  qv::CQvConnection& connection = Database().connection();
  const std::string names[] = {"  Raum ", "QVVersions"};
  size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(connection.getTable(names[i]));
    i ^= 1;
  }
}
BENCHMARK(BM_GetTableTwoNames)->Apply(qv::bench::FixedIterationsFromEnv);

void BM_UnorderedMapLookup(benchmark::State& state) {
  std::unordered_map<std::string, std::shared_ptr<qv::ds::QvRecordset>> map;
  map.emplace("raum", Database().raum());
  for (const char* other : {"gebaeude", "stock", "wohnung", "projekt"}) {
    map.emplace(other, nullptr);
  }
  const std::string name = "raum";
  for (auto _ : state) {
    std::shared_ptr<qv::ds::QvRecordset> rs = map.find(name)->second;
    benchmark::DoNotOptimize(rs);
  }
}
BENCHMARK(BM_UnorderedMapLookup)->Apply(qv::bench::FixedIterationsFromEnv);

}  // namespace

int main(int argc, char** argv) {
  return qv::bench::RunWithRatios(
      argc, argv,
      {{"BM_GetTableCached", "BM_UnorderedMapLookup", "getTable/unordered_map",
        2},
       {"BM_GetTableTwoNames", "BM_UnorderedMapLookup",
        "getTable of two names in turn/unordered_map", 0}});
}
