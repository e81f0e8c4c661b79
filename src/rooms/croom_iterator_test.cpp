#include "rooms/croom_iterator.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "com/error.h"
#include "data/cqv_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/expect_error.h"
#include "testing/room_project.h"
#include "testing/room_schema.h"

namespace qv {
namespace {

using qv::testing::RaisesError;
using qv::testing::RoomProject;
using Levels = std::vector<std::shared_ptr<ds::QvRecordset>>;

// Empty storeys and apartments, a building without storeys and one without
// rooms, room order from "OrderNum" against key order.
const std::vector<std::string> kProject = {"G1/S1/W1/R2#10", "G1/S1/W1/R1#20",
                                           "G1/S2",          "G1/S3/W1",
                                           "G1/S3/W2/R1",    "G2",
                                           "G3/S1/W1",       "G4/S1/W1/R1",
                                           "G4/S1/W1/R2",    "G5/S1/W1"};
const std::vector<std::string> kWalk = {
    "G1/S1/W1/R2", "G1/S1/W1/R1", "G1/S3/W2/R1", "G4/S1/W1/R1", "G4/S1/W1/R2"};

std::string Path(const CRoomIterator_t_& it) {
  return it.Gebaeude() + "/" + it.Stock() + "/" + it.Wohnung() + "/" +
         it.Raum();
}

std::shared_ptr<CRoomIterator_t_> Init(const Levels& levels) {
  auto it = std::make_shared<CRoomIterator_t_>();
  it->init(levels[0], levels[1], levels[2], levels[3]);
  return it;
}

// Every room from the first move on, checking that the room record set
// stands on the room the iterator reports.
std::vector<std::string> Walk(CRoomIterator_t_& it, ds::QvRecordset& rooms,
                              bool backwards, bool reread) {
  std::vector<std::string> seen;
  bool ok = backwards ? it.LastRoom() : it.FirstRoom();
  for (; ok; ok = backwards ? it.PreviousRoom(reread) : it.NextRoom(reread)) {
    seen.push_back(Path(it));
    EXPECT_EQ(qv::testing::RoomPath(rooms), seen.back());
  }
  return seen;
}

TEST(CRoomIteratorTest, WalksInOrderBothWaysLinkedOrNot) {
  std::vector<std::string> backwards(kWalk.rbegin(), kWalk.rend());
  for (bool linked : {true, false}) {
    for (bool reread : {false, true}) {
      SCOPED_TRACE(::testing::Message()
                   << "linked " << linked << " reread " << reread);
      RoomProject project(kProject);
      const Levels levels = project.Levels(linked);
      auto it = Init(levels);
      EXPECT_FALSE(it->ExistRoom());
      EXPECT_EQ(Walk(*it, *levels[3], false, reread), kWalk);
      // Off the end: False, the last room's key stays, and the walk turns
      // back from there.
      EXPECT_EQ(Path(*it), kWalk.back());
      EXPECT_TRUE(it->ExistRoom());
      EXPECT_TRUE(it->PreviousRoom(reread));
      EXPECT_EQ(Path(*it), kWalk[3]);
      // LastRoom answers whether it moved: start the way back elsewhere.
      EXPECT_TRUE(it->FirstRoom());
      EXPECT_EQ(Walk(*it, *levels[3], true, reread), backwards);
      EXPECT_EQ(Path(*it), kWalk.front());
      EXPECT_TRUE(it->NextRoom(reread));
      EXPECT_EQ(Path(*it), kWalk[1]);
      // FirstRoom and LastRoom answer whether they moved.
      EXPECT_TRUE(it->LastRoom());
      EXPECT_FALSE(it->LastRoom());
      EXPECT_EQ(Path(*it), kWalk.back());
      EXPECT_TRUE(it->FirstRoom());
      EXPECT_FALSE(it->FirstRoom());
      EXPECT_EQ(Path(*it), kWalk.front());
    }
  }
}

TEST(CRoomIteratorTest, ProjectsWithoutRoomsHaveNoFirstOrLastRoom) {
  for (const std::vector<std::string>& paths :
       {std::vector<std::string>{}, {"G1/S1/W1", "G2", "G3/S1"}}) {
    RoomProject project(paths);
    auto it = Init(project.Levels());
    EXPECT_FALSE(it->FirstRoom());
    EXPECT_FALSE(it->LastRoom());
    EXPECT_FALSE(it->NextRoom(true));
    EXPECT_FALSE(it->ExistRoom());
    EXPECT_EQ(it->Raum(), "");
  }
}

// Rooms come by "OrderNum" at every level, here against the key numbers,
// also in a file whose tables were made without the library's table creation.
TEST(CRoomIteratorTest, WalksByOrderNumberAtEveryLevel) {
  qv::testing::RoomDatabase db({2, 2, 1, 2});
  Levels plain;
  for (const char* t : {"Gebaeude", "Stock", "Wohnung", "Raum"})
    plain.push_back(db.Open(t));
  // "OrderNum" runs against the key numbers.
  EXPECT_EQ(Walk(*Init(plain), *plain[3], false, false),
            (std::vector<std::string>{
                "G2/S2/W1/R2", "G2/S2/W1/R1", "G2/S1/W1/R2", "G2/S1/W1/R1",
                "G1/S2/W1/R2", "G1/S2/W1/R1", "G1/S1/W1/R2", "G1/S1/W1/R1"}));
}

const char kEmptyKey[] = "Es wurde eine leerer Raumschlüssel übergeben.";

TEST(CRoomIteratorTest, GoToFindsRoomsOrRaisesWithPrefixAndKeyLines) {
  RoomProject project(kProject);
  auto it = Init(project.Levels());
  // Letter case is ignored; the stored keys are read back, and the walk goes
  // on from there.
  EXPECT_TRUE(it->GotoRoom("g1", "s3", "w2", "r1"));
  EXPECT_EQ(Path(*it), "G1/S3/W2/R1");
  EXPECT_TRUE(it->NextRoom());
  EXPECT_EQ(Path(*it), "G4/S1/W1/R1");
  EXPECT_TRUE(it->GotoRoomLast("G1", "S1", "W1", "R1"));
  EXPECT_TRUE(it->PreviousRoom());
  EXPECT_EQ(Path(*it), "G1/S1/W1/R2");

  // An empty key raises its own number; a key not found another.
  struct Case {
    bool last;
    RoomKey key;
    std::string text;
  };
  const Case cases[] = {
      {false, {"G1", " ", "W1", "R1"}, kEmptyKey},
      {true, {"", "S1", "W1", "R1"}, kEmptyKey},
      {false, {"G9", "S1", "W1", "R1"}, "Gebäude G9 nicht mehr gefunden."},
      {false, {"G1", "S9", "W1", "R1"}, "Stockwerk S9 nicht mehr gefunden."},
      {true, {"G1", "S2", "W1", "R1"}, "Wohnung W1 nicht mehr gefunden."},
      {false, {"G4", "S1", "W1", "R3"}, "Raum R3 nicht mehr gefunden."},
  };
  for (const Case& c : cases) {
    const std::string want =
        std::string(c.last ? "CRoomInterator->GotoRoomLast: "
                           : "CRoomInterator->GotoRoom: ") +
        c.text + "\r\nGebäude: " + c.key[0] + "\r\nStock: " + c.key[1] +
        "\r\nWohnung: " + c.key[2] + "\r\nRaum: " + c.key[3];
    EXPECT_TRUE(RaisesError(
        [&] {
          c.last ? it->GotoRoomLast(c.key[0], c.key[1], c.key[2], c.key[3])
                 : it->GotoRoom(c.key[0], c.key[1], c.key[2], c.key[3]);
        },
        c.text == kEmptyKey ? -2147220504 : -2147221504, want))
        << c.text;
  }
}

TEST(CRoomIteratorTest, BuildingDeletedByAnotherConnection) {
  RoomProject project(kProject);
  auto it = Init(project.Levels());
  ASSERT_TRUE(it->FirstRoom());
  EXPECT_TRUE(it->TestExistCurRoom());
  auto other = project.OpenAnother();
  auto buildings = other->getTable("Gebaeude");
  ASSERT_TRUE(buildings->findKey("Gebaeude", Variant("G1")));
  buildings->deleteRecord();

  EXPECT_FALSE(it->TestExistCurRoom());
  for (const std::string move : {"NextRoom", "PreviousRoom"}) {
    EXPECT_TRUE(RaisesError(
        [&] {
          move == "NextRoom" ? it->NextRoom(true) : it->PreviousRoom(true);
        },
        -2147221504,
        "CRoomIterator->" + move +
            ": CRoomIterator->GotoRoomQvRs: Gebäude G1 nicht mehr gefunden."
            "\r\nGebäude: G1\r\nStock: S1\r\nWohnung: W1\r\nRaum: R2"));
  }
  // A new walk reads the file again.
  EXPECT_TRUE(it->GotoRoom("G4", "S1", "W1", "R2"));
  EXPECT_TRUE(it->FirstRoom());
  EXPECT_EQ(Path(*it), "G4/S1/W1/R1");
}

TEST(CRoomIteratorTest, ComparesAndHandsOutTheCurrentKey) {
  RoomProject project(kProject);
  auto it = Init(project.Levels());
  it->GotoRoom("G1", "S3", "W2", "R1");
  SafeArray keys = it->GetCurRoomKeys();
  EXPECT_EQ(keys.LBound(), 0);
  EXPECT_EQ(keys[3], Variant("R1"));
  SafeArray other({"g1", "S3", "w2", "r1"}, 1);
  EXPECT_TRUE(it->EqualRoom(Variant(other)));
  other[4] = Variant("R2");
  EXPECT_FALSE(it->EqualRoom(Variant(other)));
}

}  // namespace
}  // namespace qv
