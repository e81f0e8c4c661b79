// Demonstration step: walking the rooms of the sample project (made by the
// step before) forwards and backwards, going to a room, walking an interval.
#include <iostream>
#include <string>

#include "datasource/qv_recordset.h"
#include "modules/cpr_func.h"
#include "platform/file_system.h"
#include "qv/command_registry.h"
#include "qv/room_file.h"
#include "rooms/croom_intervall.h"
#include "rooms/croom_iterator.h"

namespace qv::tool {
namespace {

std::string Short(const CRoomIterator_t_& it) {
  return it.Gebaeude() + "/" + it.Stock() + "/" + it.Wohnung() + "/" +
         it.Raum();
}

void ShowRooms(DemoContext& ctx) {
  CPRFunc_t_ naming;
  const std::string folder =
      naming.ProjNameToPath(ctx.folder.string(), "Musterhaus");
  const RoomFile file(platform::FileSystem::BuildPath(
      folder, naming.ModulToFileName("Musterhaus", "EZ")));
  const auto it = file.Iterator();
  int count = 0;
  for (bool ok = it->FirstRoom(); ok; ok = it->NextRoom()) ++count;
  ctx.out << "  forwards: " << count << " rooms, the last is " << Short(*it)
          << "\n  backwards:";
  // The walk stands on the last room now, so LastRoom would answer False
  // (it did not move): turn back from here.
  for (int shown = 0; shown < 4; ++shown) {
    ctx.out << ' ' << Short(*it);
    if (!it->PreviousRoom()) break;
  }
  ctx.out << " ...\n";
  it->GotoRoom("g2", "s1", "w2", "r3");
  ctx.out << "  GotoRoom g2/s1/w2/r3 stands on " << Short(*it);
  it->NextRoom();
  ctx.out << ", the next room is " << Short(*it) << '\n';

  CRoomIntervall_t_ range;
  range.init(file.level(0), file.level(1), file.level(2), file.level(3));
  range.startIntervall("G1", "S2", "W2", "R3");
  range.endIntervall("G2", "S1", "W1", "R2");
  ctx.out << "  interval G1/S2/W2/R3 .. G2/S1/W1/R2 (in order: "
          << (range.testStartEndIntervall() ? "yes" : "no") << "):";
  const auto& rooms = file.level(3);
  for (bool ok = range.firstRec(rooms); ok; ok = range.nextRec(rooms)) {
    ctx.out << ' ' << rooms->getValue("Gebaeude").ToString() << '/'
            << rooms->getValue("Stock").ToString() << '/'
            << rooms->getValue("Wohnung").ToString() << '/'
            << rooms->getValue("Raum").ToString();
  }
  ctx.out << '\n';
}

[[maybe_unused]] const bool kRegistered =
    RegisterDemoStep(65, "Walking the rooms", ShowRooms);

}  // namespace
}  // namespace qv::tool
