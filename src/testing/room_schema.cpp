#include "testing/room_schema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>

#include "datasource/ado_types.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/internal/db_handle.h"
#include "datasource/qv_recordset.h"

namespace qv::testing {
namespace {

using ds::ColumnDef;

std::vector<ColumnDef> KeyColumns(const std::vector<HierarchyLevel>& levels,
                                  size_t level) {
  std::vector<ColumnDef> keys;
  for (size_t i = 0; i <= level; ++i)
    keys.push_back({levels[i].table, ds::kAdVarWChar, 20});
  return keys;
}

std::vector<std::string> Names(const std::vector<ColumnDef>& columns) {
  std::vector<std::string> names;
  for (const ColumnDef& c : columns) names.push_back(c.name);
  return names;
}

std::string InsertSql(const std::string& table,
                      const std::vector<std::string>& columns) {
  std::string names, params;
  for (size_t i = 0; i < columns.size(); ++i) {
    names += (i > 0 ? ", " : "") + ds::QuoteIdentifier(columns[i]);
    params += (i > 0 ? ", ?" : "?");
  }
  return "INSERT INTO " + ds::QuoteIdentifier(table) + " (" + names +
         ") VALUES (" + params + ")";
}

struct LevelInserts {
  std::unique_ptr<SQLite::Statement> key_row;
  std::unique_ptr<SQLite::Statement> data_row;
};

class Filler {
 public:
  Filler(ds::DbConnection& con, const std::vector<HierarchyLevel>& levels,
         const std::vector<int>& counts)
      : levels_(levels), counts_(counts) {
    for (size_t i = 0; i < counts.size(); ++i) {
      std::vector<std::string> keys = Names(KeyColumns(levels, i));
      std::vector<std::string> data = keys;
      data.push_back("OrderNum");
      data.push_back("Bezeichnung");
      inserts_.push_back(
          {std::make_unique<SQLite::Statement>(
               DbHandle(con), InsertSql(levels[i].table, keys)),
           std::make_unique<SQLite::Statement>(
               DbHandle(con), InsertSql(levels[i].table + "_t", data))});
    }
  }

  void Fill(size_t level, std::vector<std::string>& keys) {
    if (level >= counts_.size()) return;
    for (int k = 1; k <= counts_[level]; ++k) {
      keys.push_back(levels_[level].key_prefix + std::to_string(k));
      Insert(level, keys, (counts_[level] - k) * 10);
      Fill(level + 1, keys);
      keys.pop_back();
    }
  }

 private:
  void Insert(size_t level, const std::vector<std::string>& keys,
              int order_num) {
    SQLite::Statement& key_row = *inserts_[level].key_row;
    SQLite::Statement& data_row = *inserts_[level].data_row;
    std::string label = levels_[level].table + " ";
    for (size_t i = 0; i < keys.size(); ++i) {
      key_row.bind(static_cast<int>(i) + 1, keys[i]);
      data_row.bind(static_cast<int>(i) + 1, keys[i]);
      label += (i > 0 ? "/" : "") + keys[i];
    }
    const int n = static_cast<int>(keys.size());
    data_row.bind(n + 1, order_num);
    data_row.bind(n + 2, label);
    key_row.exec();
    key_row.reset();
    data_row.exec();
    data_row.reset();
  }

  const std::vector<HierarchyLevel>& levels_;
  const std::vector<int>& counts_;
  std::vector<LevelInserts> inserts_;
};

}  // namespace

std::vector<HierarchyLevel> RoomLevels() {
  return {{"Gebaeude", "G"}, {"Stock", "S"}, {"Wohnung", "W"}, {"Raum", "R"}};
}

void CreateHierarchy(ds::DbConnection& con,
                     const std::vector<HierarchyLevel>& levels) {
  ds::DbCatalog catalog(con);
  for (size_t i = 0; i < levels.size(); ++i) {
    const std::vector<ColumnDef> keys = KeyColumns(levels, i);
    std::vector<ColumnDef> key_table = keys;
    key_table.push_back({"OtherFields", ds::kAdLongVarBinary});
    std::vector<ColumnDef> data_table = keys;
    data_table.push_back({"OrderNum", ds::kAdInteger});
    data_table.push_back({"Bezeichnung", ds::kAdVarWChar, 50});
    catalog.CreateTable(levels[i].table, key_table, Names(keys));
    catalog.CreateTable(levels[i].table + "_t", data_table, Names(keys));
    if (i == 0) continue;
    ds::ForeignKeyDef fk{levels[i].table, levels[i - 1].table, {}};
    for (size_t k = 0; k < i; ++k)
      fk.columns.emplace_back(levels[k].table, levels[k].table);
    catalog.AddForeignKey(levels[i].table, fk);
  }
}

void FillHierarchy(ds::DbConnection& con,
                   const std::vector<HierarchyLevel>& levels,
                   const std::vector<int>& counts) {
  ds::DbConnection::Transaction tx(con);
  {
    Filler filler(con, levels, counts);
    std::vector<std::string> keys;
    filler.Fill(0, keys);
  }
  tx.Commit();
}

void CreateRoomDatabase(ds::DbConnection& con, const std::string& path,
                        const std::vector<int>& counts) {
  ds::DbConnection::CreateDatabase(path);
  con.Open(ds::DbConnection::MakeConnectionString(path));
  CreateHierarchy(con, RoomLevels());
  FillHierarchy(con, RoomLevels(), counts);
}

namespace {

// Building a database takes several synced transactions; each filling is
// built once per process and copied for every test that asks for it.
const std::string& TemplateDatabase(const std::vector<int>& counts) {
  static TempDir dir;
  static std::map<std::vector<int>, std::string> templates;
  auto [it, created] = templates.try_emplace(counts);
  if (created) {
    it->second = dir.File("rooms" + std::to_string(templates.size()) + ".qv3");
    ds::DbConnection con;
    CreateRoomDatabase(con, it->second, counts);
  }
  return it->second;
}

}  // namespace

RoomDatabase::RoomDatabase(const std::vector<int>& counts)
    : path_(dir_.File("rooms.qv3")),
      con_(std::make_shared<ds::DbConnection>()) {
  std::filesystem::copy_file(TemplateDatabase(counts), path_);
  con_->Open(ds::DbConnection::MakeConnectionString(path_));
}

RoomDatabase::~RoomDatabase() = default;

std::shared_ptr<ds::QvRecordset> RoomDatabase::Open(
    const std::string& table) const {
  auto rs = std::make_shared<ds::QvRecordset>();
  if (!rs->openTable(con_, table))
    throw std::runtime_error("cannot open table " + table);
  return rs;
}

std::vector<std::shared_ptr<ds::QvRecordset>> RoomDatabase::OpenLinkedLevels()
    const {
  std::vector<std::shared_ptr<ds::QvRecordset>> levels;
  for (const HierarchyLevel& level : RoomLevels()) {
    levels.push_back(Open(level.table));
    if (levels.size() > 1) levels[levels.size() - 2]->addChild(levels.back());
  }
  return levels;
}

}  // namespace qv::testing
