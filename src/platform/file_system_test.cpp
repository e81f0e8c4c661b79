#include "platform/file_system.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "testing/expect_error.h"
#include "testing/file_bytes.h"
#include "testing/temp_dir.h"

namespace qv::platform {
namespace {

using FS = FileSystem;

TEST(FileSystemNamingTest, BuildPathKeepsTheLeftPartsSeparator) {
  EXPECT_EQ(FS::BuildPath("C:\\P", "Haus.qv3"), "C:\\P\\Haus.qv3");
  EXPECT_EQ(FS::BuildPath("/home/p", "Haus.qv3"), "/home/p/Haus.qv3");
  EXPECT_EQ(FS::BuildPath("Projekte", "Haus.qv3"), "Projekte/Haus.qv3");
  EXPECT_EQ(FS::BuildPath("C:\\P/x", "y"), "C:\\P/x/y");
  EXPECT_EQ(FS::BuildPath("C:\\P\\", "x"), "C:\\P\\x");
  EXPECT_EQ(FS::BuildPath("C:\\P", "\\x"), "C:\\P\\x");
  EXPECT_EQ(FS::BuildPath("C:\\P\\", "\\x"), "C:\\P\\x");
  EXPECT_EQ(FS::BuildPath("/a/", "/b"), "/a/b");
  EXPECT_EQ(FS::BuildPath("/a", "/b"), "/a/b");
  EXPECT_EQ(FS::BuildPath("", "x"), "x");
  EXPECT_EQ(FS::BuildPath("/a", ""), "/a");
}

TEST(FileSystemNamingTest, NamesOfWindowsAndPosixPaths) {
  struct Row {
    const char* path;
    const char* base;
    const char* extension;
    const char* file;
    const char* parent;
  };
  const Row rows[] = {
      {"C:\\P\\Haus_A_VM.qv3", "Haus_A_VM", "qv3", "Haus_A_VM.qv3", "C:\\P"},
      {"C:\\P", "P", "", "P", "C:\\"},
      {"C:\\", "", "", "", ""},
      {"C:\\X.qv3\\Y.qv3", "Y", "qv3", "Y.qv3", "C:\\X.qv3"},
      {"/home/p/Haus_A_VM.qv3", "Haus_A_VM", "qv3", "Haus_A_VM.qv3", "/home/p"},
      {"/a", "a", "", "a", "/"},
      {"/", "", "", "", ""},
      {"x", "x", "", "x", ""},
      {"a//b", "b", "", "b", "a"},
      {"/home/p/x.tar.gz", "x.tar", "gz", "x.tar.gz", "/home/p"},
      // Trailing separators are ignored.
      {"C:\\P\\Haus.qv3\\", "Haus", "qv3", "Haus.qv3", "C:\\P"},
      {"/p/Haus.qv3//", "Haus", "qv3", "Haus.qv3", "/p"},
      // Only the last component has an extension.
      {"/p.qv3/Haus", "Haus", "", "Haus", "/p.qv3"},
      {"a.", "a", "", "a.", ""},
      {".profile", "", "profile", ".profile", ""},
      {"", "", "", "", ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(FS::GetBaseName(row.path), row.base);
    EXPECT_EQ(FS::GetExtensionName(row.path), row.extension);
    EXPECT_EQ(FS::GetFileName(row.path), row.file);
    EXPECT_EQ(FS::GetParentFolderName(row.path), row.parent);
  }
  EXPECT_EQ(FS::ToNativePath("P\\x\\y.qv3"), "P/x/y.qv3");
}

void ExpectError(int32_t number, const std::string& text, auto&& call) {
  EXPECT_TRUE(qv::testing::RaisesError(call, number, text));
}

class FileSystemDiskTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return dir_.File(name); }
  void Write(const std::string& name, const std::string& content) const {
    testing::WriteFileBytes(Path(name), content);
  }
  std::string Read(const std::string& name) const {
    return testing::ReadFileBytes(Path(name));
  }

  FileSystem fs_;
  testing::TempDir dir_;
};

TEST_F(FileSystemDiskTest, CreateFolderDeleteFileAndTestExistence) {
  const std::string folder = Path("Haus.qv3");
  EXPECT_FALSE(fs_.FolderExists(folder));
  fs_.CreateFolder(folder);
  EXPECT_TRUE(fs_.FolderExists(folder));
  EXPECT_FALSE(fs_.FileExists(folder));

  Write("Haus.qv3/a_VM.qv3", "x");
  EXPECT_TRUE(fs_.FileExists(Path("Haus.qv3/a_VM.qv3")));
  EXPECT_FALSE(fs_.FolderExists(Path("Haus.qv3/a_VM.qv3")));
  // Backslashes name the same file.
  EXPECT_TRUE(fs_.FileExists(Path("Haus.qv3\\a_VM.qv3")));
  EXPECT_FALSE(fs_.FileExists(Path("missing")));
  EXPECT_FALSE(fs_.FolderExists(""));

  ExpectError(58, "File already exists", [&] { fs_.CreateFolder(folder); });
  ExpectError(58, "File already exists",
              [&] { fs_.CreateFolder(Path("Haus.qv3/a_VM.qv3")); });
  ExpectError(76, "Path not found",
              [&] { fs_.CreateFolder(Path("missing/sub")); });
  Write("a.qv3", "x");
  fs_.DeleteFile(Path("a.qv3"));
  EXPECT_FALSE(fs_.FileExists(Path("a.qv3")));
  ExpectError(53, "File not found", [&] { fs_.DeleteFile(Path("a.qv3")); });
  ExpectError(76, "Path not found",
              [&] { fs_.DeleteFile(Path("missing/a.qv3")); });
  // A folder is not a file.
  fs_.CreateFolder(Path("sub"));
  ExpectError(53, "File not found", [&] { fs_.DeleteFile(Path("sub")); });
  EXPECT_TRUE(fs_.FolderExists(Path("sub")));
}

TEST_F(FileSystemDiskTest,
       MoveFileRenamesOrMovesIntoAFolderAndNeverOverwrites) {
  Write("a.qv3", "first");
  Write("b.qv3", "second");
  fs_.MoveFile(Path("a.qv3"), Path("c.qv3"));
  EXPECT_FALSE(fs_.FileExists(Path("a.qv3")));
  EXPECT_EQ(Read("c.qv3"), "first");

  ExpectError(58, "File already exists",
              [&] { fs_.MoveFile(Path("c.qv3"), Path("b.qv3")); });
  EXPECT_EQ(Read("b.qv3"), "second");
  EXPECT_EQ(Read("c.qv3"), "first");

  ExpectError(53, "File not found",
              [&] { fs_.MoveFile(Path("a.qv3"), Path("d.qv3")); });
  ExpectError(76, "Path not found",
              [&] { fs_.MoveFile(Path("c.qv3"), Path("missing/c.qv3")); });
  EXPECT_EQ(Read("c.qv3"), "first");
  Write("a.qv3", "first");
  fs_.CreateFolder(Path("sub"));
  fs_.MoveFile(Path("a.qv3"), Path("sub\\"));
  EXPECT_EQ(Read("sub/a.qv3"), "first");
  EXPECT_FALSE(fs_.FileExists(Path("a.qv3")));
  // A folder itself is not moved.
  ExpectError(53, "File not found",
              [&] { fs_.MoveFile(Path("sub"), Path("other")); });
}

TEST_F(FileSystemDiskTest, WriteProtectedFolderGivesPermissionDenied) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write anywhere";
  fs_.CreateFolder(Path("ro"));
  Write("ro/a.qv3", "x");
  ASSERT_EQ(::chmod(Path("ro").c_str(), 0555), 0);
  ExpectError(70, "Permission denied",
              [&] { fs_.CreateFolder(Path("ro/sub")); });
  ExpectError(70, "Permission denied",
              [&] { fs_.DeleteFile(Path("ro/a.qv3")); });
  ::chmod(Path("ro").c_str(), 0755);
}

// A file system the host installs, which knows one file only.
class OneFileSystem : public FileSystem {
 public:
  bool FileExists(std::string_view path) const override {
    return path == "virtual.qv3";
  }
};

TEST(FileSystemServiceTest, InstalledFileSystemIsUsedUntilReset) {
  EXPECT_FALSE(FS::Current()->FileExists("virtual.qv3"));
  FS::Install(std::make_shared<OneFileSystem>());
  EXPECT_TRUE(FS::Current()->FileExists("virtual.qv3"));
  FS::Reset();
  EXPECT_FALSE(FS::Current()->FileExists("virtual.qv3"));
  EXPECT_TRUE(FS::Current()->FolderExists("/"));
}

}  // namespace
}  // namespace qv::platform
