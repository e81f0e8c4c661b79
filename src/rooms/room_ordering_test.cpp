#include "rooms/room_ordering.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "datasource/qv_ds.h"
#include "datasource/qv_recordset.h"
#include "rooms/croom_iterator.h"
#include "testing/room_project.h"

namespace qv {
namespace {

using qv::testing::RoomProject;

const std::vector<std::string> kProject = {
    "G1/S1/W1/R2#10",   "G1/S1/W1/R1#20", "G1/S2", "G1/S3/W2/R1#7", "G2",
    "G4#-5/S1/W1/R1#3", "G4/S1/W1/R2#1"};

// "OrderNum" of every room in the file, by path.
std::map<std::string, int32_t> StoredNumbers(RoomProject& project) {
  auto rooms = project.OpenRecordset("Raum");
  std::map<std::string, int32_t> numbers;
  for (rooms->moveFirst(); !rooms->isEOF(); rooms->moveNext())
    numbers[qv::testing::RoomPath(*rooms)] =
        rooms->getValue("OrderNum").ToLong();
  return numbers;
}

// The room data set: all rooms, or those of one building.
std::shared_ptr<ds::QvDs> RoomData(RoomProject& project,
                                   const std::string& building = "") {
  auto rooms = project.OpenRecordset("Raum");
  if (!building.empty()) {
    rooms->setValue("Gebaeude", Variant(building));
    rooms->readBlock(1, true);
  }
  auto data = std::make_shared<ds::QvDs>();
  data->loadFromRecordset(rooms, {"Gebaeude", "Stock", "Wohnung", "Raum",
                                  "OrderNum", "Bezeichnung"});
  return data;
}

std::vector<std::string> WalkOrder(RoomProject& project) {
  auto levels = project.Levels();
  CRoomIterator_t_ it;
  it.init(levels[0], levels[1], levels[2], levels[3]);
  std::vector<std::string> seen;
  for (bool ok = it.FirstRoom(); ok; ok = it.NextRoom())
    seen.push_back(it.Gebaeude() + "/" + it.Stock() + "/" + it.Wohnung() + "/" +
                   it.Raum());
  return seen;
}

TEST(RoomOrderingTest, NumbersTheDataSetsRoomsInWalkingOrder) {
  const std::string rooms[] = {"G4/S1/W1/R2", "G4/S1/W1/R1", "G1/S1/W1/R2",
                               "G1/S1/W1/R1", "G1/S3/W2/R1"};
  struct Case {
    std::string building;  // the data set's rooms; "" for all
    int32_t numbered;
    std::vector<int32_t> after;  // the "OrderNum" of each of `rooms`
  };
  const Case cases[] = {
      {"", 5, {0, 1, 2, 3, 4}},
      // Rooms outside the data set use up no number and keep theirs.
      {"G1", 3, {1, 3, 0, 1, 2}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE("data set of building '" + c.building + "'");
    RoomProject project(kProject);
    const std::vector<std::string> order = WalkOrder(project);
    auto levels = project.Levels();
    EXPECT_EQ(
        NumberRoomsInWalkingOrder(*RoomData(project, c.building), levels[0],
                                  levels[1], levels[2], levels[3]),
        c.numbered);
    std::map<std::string, int32_t> after;
    for (size_t i = 0; i < c.after.size(); ++i) after[rooms[i]] = c.after[i];
    EXPECT_EQ(StoredNumbers(project), after);
    EXPECT_EQ(WalkOrder(project), order);
  }
}

}  // namespace
}  // namespace qv
