#include "rooms/croom_intervall.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/cqv_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/room_project.h"

namespace qv {
namespace {

using qv::testing::RoomProject;

const std::vector<std::string> kProject = {
    "G1/S1/W1/R2#10", "G1/S1/W1/R1#20", "G1/S2",      "G1/S3/W2/R1",
    "G2/S1/W1",       "G4/S1/W1/R1",    "G4/S1/W1/R2"};

RoomKey Key(const std::string& path) {
  RoomKey key;
  size_t level = 0, start = 0;
  for (size_t slash; (slash = path.find('/', start)) != std::string::npos;
       start = slash + 1)
    key[level++] = path.substr(start, slash - start);
  key[level] = path.substr(start);
  return key;
}

struct Fixture {
  explicit Fixture(const std::vector<std::string>& paths = kProject)
      : project(paths), levels(project.Levels()) {
    range.init(levels[0], levels[1], levels[2], levels[3]);
  }
  bool Set(const std::string& from, const std::string& to) {
    const RoomKey a = Key(from), b = Key(to);
    const bool start = range.startIntervall(a[0], a[1], a[2], a[3]);
    const bool end = range.endIntervall(b[0], b[1], b[2], b[3]);
    return start && end;
  }
  // The rooms at which the room record set matches, start to end.
  std::vector<std::string> Rooms() {
    std::vector<std::string> seen;
    auto& rooms = levels[3];
    for (bool ok = range.firstRec(rooms); ok; ok = range.nextRec(rooms))
      seen.push_back(qv::testing::RoomPath(*rooms));
    return seen;
  }

  RoomProject project;
  std::vector<std::shared_ptr<ds::QvRecordset>> levels;
  CRoomIntervall_t_ range;
};

TEST(CRoomIntervallTest, WalksFromStartToEndIncluded) {
  struct Case {
    const char* from;
    const char* to;
    bool in_order;
    std::vector<std::string> rooms;
  };
  const Case cases[] = {
      {"G1/S3/W2/R1", "G1/S3/W2/R1", true, {"G1/S3/W2/R1"}},
      {"g1/s1/w1/r1",
       "G4/S1/W1/R1",
       true,
       {"G1/S1/W1/R1", "G1/S3/W2/R1", "G4/S1/W1/R1"}},
      // End before start: the test walks to the project's last room.
      {"G4/S1/W1/R1", "G1/S1/W1/R2", false, {"G4/S1/W1/R1", "G4/S1/W1/R2"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.from) + " .. " + c.to);
    Fixture f;
    ASSERT_TRUE(f.Set(c.from, c.to));
    EXPECT_EQ(f.range.testStartEndIntervall(), c.in_order);
    EXPECT_EQ(f.Rooms(), c.rooms);
  }
}

TEST(CRoomIntervallTest, UnsetIntervalAnswersFalse) {
  Fixture f;
  CRoomIntervall_t_ fresh;
  EXPECT_FALSE(fresh.startIntervall("G1", "S1", "W1", "R1"));
  EXPECT_FALSE(fresh.testStartEndIntervall());
  EXPECT_FALSE(fresh.firstRec(f.levels[3]));
  // An unknown or empty start unsets the interval until the next success.
  for (const char* bad : {"G1/S1/W1/R9", "G1/ /W1/R1"}) {
    EXPECT_FALSE(f.Set(bad, "G4/S1/W1/R2")) << bad;
    EXPECT_FALSE(f.range.testStartEndIntervall());
    EXPECT_TRUE(f.Rooms().empty());
  }
  ASSERT_TRUE(f.Set("G4/S1/W1/R2", "G4/S1/W1/R2"));
  EXPECT_TRUE(f.range.testStartEndIntervall());
}

TEST(CRoomIntervallTest, EndThatDiffersInCaseIsNeverReached) {
  Fixture f;
  ASSERT_TRUE(f.Set("G1/S3/W2/R1", "G4/S1/W1/R1"));
  // Another connection renames the end room to lower case: the interval
  // keeps the stored "R1", which no room matches exactly any more.
  auto other = f.project.OpenAnother();
  auto buildings = other->getTable("Gebaeude");
  other->getTable("Stock", true);
  other->getTable("Wohnung", true);
  auto rooms = other->getTable("Raum", true);
  ASSERT_TRUE(buildings->findKey("Gebaeude", Variant("G4")));
  ASSERT_TRUE(rooms->findKey("Raum", Variant("R1")));
  rooms->setValue("Raum", Variant("r1"));
  rooms->updateRecord();

  EXPECT_FALSE(f.range.testStartEndIntervall());
  EXPECT_EQ(f.Rooms(), (std::vector<std::string>{"G1/S3/W2/R1", "G4/S1/W1/r1",
                                                 "G4/S1/W1/R2"}));
}

}  // namespace
}  // namespace qv
