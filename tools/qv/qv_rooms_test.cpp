// Runs the built qv tool's `rooms` command on real module files and checks
// its output, its exit status and what it writes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "datasource/qv_recordset.h"
#include "testing/file_bytes.h"
#include "testing/room_project.h"
#include "testing/run_tool.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

using ::qv::testing::ReadFileBytes;
using ::qv::testing::RoomProject;
using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

const std::vector<std::string> kProject = {
    "G1/S1/W1/R2#10", "G1/S1/W1/R1#20", "G1/S2", "G1/S3/W2/R1", "G2",
    "G3/S1/W1/R1"};

ToolRun Rooms(const RoomProject& project, const std::string& args) {
  return RunQv("rooms '" + project.path() + "' " + args);
}

TEST(QvRoomsToolTest, ListsRoomsAsTreeFlatOrInterval) {
  RoomProject project(kProject);
  struct Case {
    std::string args;
    std::string out;
  };
  const Case cases[] = {
      {"",
       "G1  Gebaeude G1\n  S1  Stock S1\n    W1  Wohnung W1\n"
       "      R2  Raum R2\n      R1  Raum R1\n"
       "  S3  Stock S3\n    W2  Wohnung W2\n      R1  Raum R1\n"
       "G3  Gebaeude G3\n  S1  Stock S1\n    W1  Wohnung W1\n"
       "      R1  Raum R1\n"},
      {"--flat",
       "G1\tS1\tW1\tR2\nG1\tS1\tW1\tR1\nG1\tS3\tW2\tR1\nG3\tS1\tW1\tR1\n"},
      {"--flat --from g1/s1/w1/r1 --to G1/S3/W2/R1",
       "G1\tS1\tW1\tR1\nG1\tS3\tW2\tR1\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Rooms(project, c.args), (ToolRun{0, c.out, ""})) << c.args;
  }
}

TEST(QvRoomsToolTest, RefusesBadArgumentsAndFilesWritingNothing) {
  RoomProject project(kProject);
  testing::ProjectDatabase plain;
  const std::string before = ReadFileBytes(project.path());
  struct Case {
    std::string args;
    std::string err;
  };
  const Case cases[] = {
      {"'" + project.path() + "' --from G3/S1/W1/R1 --to G1/S1/W1/R2",
       "the end room G1/S1/W1/R2 lies before the start room G3/S1/W1/R1\n"},
      {"'" + project.path() + "' --from G1/S1/W1/R9 --to G3/S1/W1/R1",
       "start room G1/S1/W1/R9 not found\n"},
      {"'" + project.path() + "' --from G1/S1/W1/R1 --to G3/S1/W1/R9",
       "end room G3/S1/W1/R9 not found\n"},
      {"'" + project.path() + ".fehlt' --flat",
       "no such file: " + project.path() + ".fehlt\n"},
      {"'" + project.path() + "' --from G1/S1 --to G3/S1/W1/R1",
       "--from G1/S1: a room is given as BUILDING/STOREY/APARTMENT/ROOM\n"},
      {"'" + project.path() + "' --renumber --to G3/S1/W1/R1",
       "--from and --to go together\n"},
      {"'" + plain.path() + "' --renumber",
       plain.path() +
           " is not a module file with rooms: missing table(s) Gebaeude, "
           "Stock, Wohnung, Raum\n"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(RunQv("rooms " + c.args), (ToolRun{1, "", c.err})) << c.args;
  }
  EXPECT_EQ(ReadFileBytes(project.path()), before);
}

TEST(QvRoomsToolTest, RenumbersInWalkingOrder) {
  RoomProject project(kProject);
  EXPECT_EQ(Rooms(project, "--renumber"),
            (ToolRun{0, "numbered 4 rooms in walking order\n", ""}));
  auto rooms = project.OpenRecordset("Raum");
  std::string numbers;
  for (rooms->moveFirst(); !rooms->isEOF(); rooms->moveNext()) {
    numbers += testing::RoomPath(*rooms) + "=" +
               rooms->getValue("OrderNum").ToString() + " ";
  }
  EXPECT_EQ(numbers,
            "G1/S1/W1/R2=0 G1/S1/W1/R1=1 G1/S3/W2/R1=2 G3/S1/W1/R1=3 ");
}

}  // namespace
}  // namespace qv

#endif  // QVGLOBAL_QV_TOOL
