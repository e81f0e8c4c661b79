// Demonstration step: a sample project with the room hierarchy, its
// database described by `qv db info`, and one compaction.
#include <iostream>

#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "data/qv_project.h"
#include "datasource/qv_recordset.h"
#include "qv/command_registry.h"
#include "qv/db_report.h"

namespace qv::tool {
namespace {

void ShowSampleProject(DemoContext& ctx) {
  const auto files = CreateQvProject(ctx.folder.string(), "Musterhaus",
                                     {"VM", "EZ"}, QvDbCatalogTypeLocal);
  ctx.out << "  created " << files.size() << " module databases in "
          << (ctx.folder / "Musterhaus.qv3").string() << "\n";
  CQvDbContainer container;
  auto con = container.getQvProjectConnection(files[1]);
  AddRoomTables(*con);
  FillSampleRooms(*con, 3, 2, 2, 4);
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
