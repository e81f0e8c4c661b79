// Two processes on one database file: one inserts records through its own
// record set while the other reads blocks and updates records, both at the
// pace of a busy user (a few milliseconds between writes). The busy timeout
// makes each wait for the other's lock instead of failing. (SQLite's lock
// waits are not fair: a process that commits back to back without pause
// can starve another one beyond any timeout.)
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "com/error.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/ds_helpers.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

constexpr int kInserted = 60;

// Runs in the forked child: its own connection, one transaction per record.
int InsertRooms(const std::string& path) {
  try {
    auto con = std::make_shared<DbConnection>();
    con->Open(DbConnection::MakeConnectionString(path));
    auto rs = std::make_shared<QvRecordset>();
    if (!rs->openTable(con, "raum")) return 2;
    for (int i = 0; i < kInserted; ++i) {
      rs->clearVars();
      qv::testing::SetKeys(*rs, {"G1", "S1", "W1", "N" + std::to_string(i)});
      rs->setValue("OrderNum", Variant(int32_t{100 + i}));
      rs->insertRecord();
      usleep(2000);
    }
    return 0;
  } catch (const Error& e) {
    fprintf(stderr, "child: %s (%s)\n", e.description().c_str(),
            e.source().c_str());
    return 1;
  }
}

TEST(QvRecordsetProcessTest, ASecondProcessWritesWhileOneReadsAndWrites) {
  qv::testing::RoomDatabase db({2, 2, 2, 2});
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) _exit(InsertRooms(db.path()));

  auto reader = db.Open("raum");
  auto updater = db.Open("raum");
  qv::testing::ReadBlock(*updater, {"G2"});
  int32_t seen = 0, updates = 0;
  std::string failure;
  int status = 0;
  // At least some rounds, and as long as the writer runs.
  for (int round = 0; round < 20 || waitpid(child, &status, WNOHANG) == 0;
       ++round) {
    try {
      qv::testing::ReadBlock(*reader, {"G1", "S1", "W1"});
      if (reader->getRecordCount() < seen) failure = "rows went missing";
      seen = reader->getRecordCount();
      if (round % 4 == 0) {
        updater->setValue("Bezeichnung",
                          Variant("Stand " + std::to_string(++updates)));
        updater->updateRecord();
      }
      usleep(2000);
    } catch (const Error& e) {
      failure = e.description();
    }
  }
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(failure, "");
  DbConnection check;
  check.Open(DbConnection::MakeConnectionString(db.path()));
  EXPECT_EQ(
      check.QueryValue("SELECT COUNT(*) FROM raum_t WHERE Gebaeude = 'G1' "
                       "AND Stock = 'S1' AND Wohnung = 'W1'"),
      Variant(int32_t{2 + kInserted}));
  EXPECT_EQ(check.QueryValue("SELECT COUNT(*) FROM raum WHERE Gebaeude = 'G1'"),
            Variant(int32_t{8 + kInserted}));
  // The updater stands on the first room of G2 in block order.
  EXPECT_EQ(check.QueryValue(
                "SELECT Bezeichnung FROM raum_t WHERE Gebaeude = 'G2' AND "
                "Stock = 'S1' AND Wohnung = 'W1' AND Raum = 'R2'"),
            Variant("Stand " + std::to_string(updates)));
}

}  // namespace
}  // namespace qv::ds
