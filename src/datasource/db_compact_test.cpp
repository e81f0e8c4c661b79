// Compaction of a file that other processes use: a writer in a second
// process keeps its connection open and inserts records while this process
// compacts the file again and again. Every insert the writer was told had
// succeeded must be in the file afterwards, and none may fail. The file
// itself (inode, permissions, links) stays what it was.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "com/error.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "testing/ds_helpers.h"
#include "testing/room_schema.h"

namespace qv::ds {
namespace {

namespace fs = std::filesystem;

constexpr int kInserts = 200;
constexpr int kMinCompactions = 10;

// Runs in the forked child: one connection for the whole run, one record
// per transaction; writes one byte to `acks` for every acknowledged insert.
// Every tenth of the way it reads one byte from `compacted` (one per
// compaction), so that however slow the machine, at least kMinCompactions
// compactions fall into its run.
int InsertRooms(const std::string& path, int acks, int compacted) {
  try {
    auto con = std::make_shared<DbConnection>();
    con->Open(DbConnection::MakeConnectionString(path));
    auto rs = std::make_shared<QvRecordset>();
    if (!rs->openTable(con, "raum")) return 2;
    for (int i = 0; i < kInserts; ++i) {
      rs->clearVars();
      testing::SetKeys(*rs, {"G1", "S1", "W1", "N" + std::to_string(i)});
      rs->setValue("Bezeichnung", Variant(std::string(40, 'x')));
      rs->insertRecord();
      if (::write(acks, "+", 1) != 1) return 3;
      char byte;
      if ((i + 1) % (kInserts / kMinCompactions) == 0 &&
          ::read(compacted, &byte, 1) != 1) {
        return 4;
      }
      usleep(1000);
    }
    return 0;
  } catch (const Error& e) {
    fprintf(stderr, "writer: %s (%s)\n", e.description().c_str(),
            e.source().c_str());
    return 1;
  }
}

// Bytes readable from `fd` now (non-blocking) or up to its end (blocking).
int CountAcks(int fd) {
  int acks = 0;
  char buffer[256];
  for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;)
    acks += static_cast<int>(n);
  return acks;
}

TEST(CompactBesideOthersTest,
     WriterInAnotherProcessLosesNothingAcrossCompactions) {
  testing::RoomDatabase db({2, 2, 2, 40});
  db.con()->Close();
  int pipe_fds[2], compacted_fds[2];
  ASSERT_EQ(::pipe(pipe_fds), 0);
  ASSERT_EQ(::pipe(compacted_fds), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::close(pipe_fds[0]);
    ::close(compacted_fds[1]);
    ::_exit(InsertRooms(db.path(), pipe_fds[1], compacted_fds[0]));
  }
  ::close(pipe_fds[1]);
  // compacted_fds[0] stays open here too: a compaction after the writer
  // has ended then writes into the pipe instead of raising SIGPIPE.
  ::fcntl(pipe_fds[0], F_SETFL, O_NONBLOCK);
  int compactions = 0, status = 0, acked = 0;
  std::string failure;
  while (::waitpid(child, &status, WNOHANG) == 0) {
    try {
      DbCatalog::Compact(db.path());
      ++compactions;
      if (::write(compacted_fds[1], "c", 1) != 1) failure = "pipe";
    } catch (const Error& e) {
      failure = e.description();
      ::close(compacted_fds[1]);  // the writer stops at its next pause
      compacted_fds[1] = -1;
    }
    acked += CountAcks(pipe_fds[0]);
    usleep(20000);  // leaves the writer room to take the lock
  }
  ::fcntl(pipe_fds[0], F_SETFL, 0);
  acked += CountAcks(pipe_fds[0]);
  ::close(pipe_fds[0]);
  if (compacted_fds[1] >= 0) ::close(compacted_fds[1]);
  ::close(compacted_fds[0]);

  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(failure, "");
  EXPECT_GE(compactions, kMinCompactions);
  EXPECT_EQ(acked, kInserts);
  DbConnection check;
  check.Open(DbConnection::MakeConnectionString(db.path()));
  EXPECT_EQ(check.QueryValue("SELECT COUNT(*) FROM raum_t WHERE Raum LIKE "
                             "'N%' AND Gebaeude = 'G1'"),
            Variant(int32_t{acked}));
  EXPECT_EQ(check.QueryValue("PRAGMA integrity_check"), Variant("ok"));
}

TEST(CompactBesideOthersTest, KeepsInodePermissionsAndLinks) {
  testing::RoomDatabase db({2, 2, 2, 1});
  db.con()->Execute("CREATE TABLE ballast (x)");
  db.con()->Execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
      "i < 100) INSERT INTO ballast SELECT zeroblob(4000) FROM n");
  db.con()->Execute("DROP TABLE ballast");
  db.con()->Close();
  const std::string path = db.path();
  const std::string hard = path + ".hard", soft = path + ".soft";
  fs::create_hard_link(path, hard);
  fs::create_symlink(path, soft);
  ASSERT_EQ(::chmod(path.c_str(), 0600), 0);
  struct stat before {};
  ASSERT_EQ(::stat(path.c_str(), &before), 0);

  DbCatalog::Compact(soft);

  struct stat after {};
  ASSERT_EQ(::stat(path.c_str(), &after), 0);
  EXPECT_TRUE(fs::is_symlink(soft));
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_mode & 07777, 0600u);
  EXPECT_EQ(after.st_uid, before.st_uid);
  EXPECT_EQ(after.st_gid, before.st_gid);
  EXPECT_EQ(after.st_nlink, 2u);
  EXPECT_LT(after.st_size, before.st_size);
  EXPECT_FALSE(fs::exists(path + "-journal"));
  DbConnection check;
  check.Open(DbConnection::MakeConnectionString(hard));
  EXPECT_EQ(check.QueryValue("SELECT COUNT(*) FROM raum"), Variant(int32_t{8}));
}

}  // namespace
}  // namespace qv::ds
