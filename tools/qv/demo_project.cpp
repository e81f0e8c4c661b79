// Demonstration step: a sample project with the room hierarchy, its
// database described by `qv db info`, and one compaction.
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "data/qv_project.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "qv/command_registry.h"
#include "qv/db_report.h"

namespace qv::tool {
namespace {

const char* const kLevels[] = {"Gebaeude", "Stock", "Wohnung", "Raum"};
const char* const kKeyPrefix[] = {"G", "S", "W", "R"};

// Fills the room tables with `counts[0]` buildings of `counts[1]` storeys of
// `counts[2]` apartments of `counts[3]` rooms each, through the record sets
// as a module would; keys "G1", "S1", "W1", "R1" ... in one transaction.
void FillSampleRooms(CQvConnection& con, const int (&counts)[4]) {
  std::shared_ptr<ds::QvRecordset> rs[4];
  for (int level = 0; level < 4; ++level) {
    rs[level] = con.getTable(kLevels[level]);
  }
  std::vector<std::string> keys(4);
  // Depth-first: every record of a level is followed by its children.
  std::function<void(int)> fill = [&](int level) {
    for (int i = 1; i <= counts[level]; ++i) {
      keys[level] = kKeyPrefix[level] + std::to_string(i);
      for (int k = 0; k <= level; ++k) {
        rs[level]->setValue(kLevels[k], keys[k]);
      }
      rs[level]->setValue("OrderNum", Variant(int32_t{i}));
      rs[level]->setValue("Bezeichnung", Variant(std::string(kLevels[level]) +
                                                 " " + keys[level]));
      rs[level]->insertRecord();
      if (level < 3) fill(level + 1);
    }
  };
  ds::DbConnection::Transaction transaction(*con.m_conConnection);
  fill(0);
  transaction.Commit();
}

void ShowSampleProject(DemoContext& ctx) {
  const auto files = CreateQvProject(ctx.folder.string(), "Musterhaus",
                                     {"VM", "EZ"}, QvDbCatalogTypeLocal);
  ctx.out << "  created " << files.size() << " module databases in "
          << (ctx.folder / "Musterhaus.qv3").string() << "\n";
  CQvDbContainer container;
  auto con = container.getQvProjectConnection(files[1]);
  AddRoomTables(*con);
  FillSampleRooms(*con, {3, 2, 2, 4});
  // The tables are cached without parents now; a new connection links them.
  container.closeQvConnection(con);
  con = container.getQvProjectConnection(files[1]);
  // Opened parent first, each child narrows to its parent's current record.
  auto buildings = con->getTable("Gebaeude");
  con->getTable("Stock", true);
  con->getTable("Wohnung", true);
  auto rooms = con->getTable("Raum", true);
  ctx.out << "  " << buildings->getRecordCount()
          << " buildings x 2 storeys x 2 apartments x 4 rooms; the first "
             "apartment holds:";
  for (rooms->moveFirst(); !rooms->isEOF(); rooms->moveNext()) {
    ctx.out << ' ' << rooms->getValue("Raum").ToString();
  }
  ctx.out << '\n';
  container.closeQvConnection(con);
  PrintDatabaseInfo(files[1], ctx.out);
  container.compactQvProjectConnection(files[1]);
  ctx.out << "  compacted " << files[1] << "\n";
}

[[maybe_unused]] const bool kRegistered =
    RegisterDemoStep(60, "A sample project with rooms", ShowSampleProject);

}  // namespace
}  // namespace qv::tool
