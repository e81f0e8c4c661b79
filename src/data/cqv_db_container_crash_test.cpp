// Compaction killed at random moments: after every kill the database file
// is there, intact and complete (the old file or the new one).
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "data/cqv_connection.h"
#include "data/cqv_db_container.h"
#include "data/qv_project.h"
#include "datasource/db_connection.h"
#include "datasource/db_maintenance.h"
#include "testing/room_schema.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

constexpr int kTrials = 24;
constexpr int64_t kRooms = 20000;

int64_t RoomCount(const std::string& file) {
  ds::DbConnection con;
  con.Open(ds::DbConnection::MakeConnectionString(file));
  EXPECT_TRUE(ds::CheckDatabase(con).empty());
  return con.QueryValue("SELECT count(*) FROM \"raum_t\"").ToLong();
}

// Compacts in a child process and kills it after `delay`; true when the
// child finished before the kill.
bool CompactAndKill(const std::string& file, std::chrono::microseconds delay) {
  const pid_t child = ::fork();
  if (child == 0) {
    try {
      CQvDbContainer().compactQvProjectConnection(file);
    } catch (...) {
      ::_exit(2);
    }
    ::_exit(0);
  }
  std::this_thread::sleep_for(delay);
  ::kill(child, SIGKILL);
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(CQvDbContainerCrashTest, KilledCompactionLeavesOldOrNewFileIntact) {
  testing::TempDir dir;
  const std::string file =
      CreateQvProject(dir.path(), "Haus", {"VM"}, QvDbCatalogTypeLocal)[0];
  {
    CQvDbContainer container;
    auto con = container.getQvProjectConnection(file);
    AddRoomTables(*con);
    testing::FillHierarchy(*con->m_conConnection, testing::RoomLevels(),
                           {5, 4, 5, static_cast<int>(kRooms / 100)});
    container.closeQvConnection(con);
  }
  const auto start = std::chrono::steady_clock::now();
  CQvDbContainer().compactQvProjectConnection(file);
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);

  std::mt19937 random(20261121);
  std::uniform_int_distribution<int64_t> at(0, took.count() * 3 / 2);
  int finished = 0;
  for (int trial = 0; trial < kTrials; ++trial) {
    finished += CompactAndKill(file, std::chrono::microseconds(at(random)));
    ASSERT_EQ(RoomCount(file), kRooms) << "trial " << trial;
  }
  // The kills must have hit running compactions, not only finished ones.
  EXPECT_LT(finished, kTrials);
}

}  // namespace
}  // namespace qv
