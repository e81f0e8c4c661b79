// The INI engine through its public interface: how files read, the exact
// bytes a write leaves, encodings, and reads after changes by others.
#include "platform/profile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "testing/file_bytes.h"
#include "testing/temp_dir.h"

namespace qv::platform {
namespace {

namespace fs = std::filesystem;

class ProfileTest : public ::testing::Test {
 protected:
  void SetUp() override { file_ = dir_.File("test.ini"); }

  void Put(const std::string& bytes) { testing::WriteFileBytes(file_, bytes); }
  std::string Bytes() const { return testing::ReadFileBytes(file_); }
  std::vector<std::string> FolderEntries() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir_.path())) {
      names.push_back(e.path().filename().string());
    }
    return names;
  }
  bool Write(const std::string& section, const std::string& key,
             const std::string& value) {
    return Profile::WriteString(file_, section, key, value);
  }

  testing::TempDir dir_;
  std::string file_;
};

struct ReadRow {
  std::string bytes;
  std::string section;
  std::string key;
  std::string expected;  // with the default "dflt"
};

TEST_F(ProfileTest,
       ReadsAsTheWindowsProfileFunctionsWithDefaultsAndBufferSizes) {
  const std::string long_value(2000, 'x');
  const std::vector<ReadRow> rows = {
      // letter case, blanks, quotes, comments
      {"[Sec]\r\nKey=Value\r\n", "sEC", "kEY", "Value"},
      {"[ Sec ]\n  Key \t=  Va lue \t\n", "Sec", "Key", "Va lue"},
      {"[S]\nk=\" padded \"\n", "S", "k", " padded "},
      {"[S]\nk=\"a\"b\"\n", "S", "k", "a\"b"},
      {"[S]\nk=\"open\n", "S", "k", "\"open"},
      {"[S]\nk=\"\"\n", "S", "k", ""},
      {"[S]\nk=a ; not a comment\n", "S", "k", "a ; not a comment"},
      {"[S]\n;k=commented\n", "S", "k", "dflt"},
      {"[S]\n;k=commented\n", "S", ";k", "commented"},
      {"[S]\nk=a=b\n", "S", "k", "a=b"},
      // empty value, missing parts, lines that are no keys
      {"[S]\nk=\n", "S", "k", ""},
      {"[S]\nk\nk=v\n", "S", "k", "v"},
      {"[S]\nk=v\n", "T", "k", "dflt"},
      {"[S]\nk=v\n", "S", "j", "dflt"},
      {"k=v\n[S]\n", "S", "k", "dflt"},
      {"[S] trailing\nk=v\n", "S", "k", "v"},
      {"[S\nk=v\n", "S", "k", "v"},
      // the first section and the first key win
      {"[S]\nk=1\nK=2\n[s]\nk=3\nj=4\n", "S", "k", "1"},
      {"[S]\nk=1\n[s]\nj=4\n", "s", "j", "dflt"},
      // line ends
      {"[S]\rk=cr\r", "S", "k", "cr"},
      {"[S]\r\nk=crlf", "S", "k", "crlf"},
      {"[A]\na=1\r[S]\r\nk=mixed\n", "S", "k", "mixed"},
      // encodings and folded accented letters
      {"[Größe]\nk=\xC3\xA4\n", "GRÖßE", "K", "ä"},
      {"[Gr\xD6\xDFte]\nk=\xE4\x80\n", "größte", "k", "ä€"},
      {"\xEF\xBB\xBF[S]\nk=bom\n", "S", "k", "bom"},
      // at most 1,023 characters
      {"[S]\nk=" + long_value + "\n", "S", "k", long_value.substr(0, 1023)},
  };
  for (const ReadRow& row : rows) {
    Put(row.bytes);
    EXPECT_EQ(Profile::GetString(file_, row.section, row.key, "dflt"),
              row.expected)
        << "file \"" << row.bytes << "\" [" << row.section << "] " << row.key;
  }
  fs::remove(file_);  // defaults of a missing file
  EXPECT_EQ(Profile::GetString(file_, "S", "k", "dflt \t  "), "dflt");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", "  lead"), "  lead");
  Put("[S]\nk=äöüß\n");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", "", 4), "äöü");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", "", 1), "");
  EXPECT_EQ(Profile::GetString(file_, "S", "x", "abcdef", 4), "abc");
}

TEST_F(ProfileTest, ReadsIntegersAsTheWindowsFunction) {
  const std::vector<std::pair<std::string, int32_t>> rows = {
      {"42", 42},
      {"  -17", -17},
      {"+7", 7},
      {"42A9", 42},
      {"B42", 0},
      {"", 0},
      {"0x10", 0},
      {"\"12\"", 12},
      {"- 5", 0},
      {"4294967297", 1},
      {"2147483648", INT32_MIN},
      {"-2147483649", INT32_MAX},
      {"007", 7},
  };
  for (const auto& [value, expected] : rows) {
    Put("[S]\nk=" + value + "\n");
    EXPECT_EQ(Profile::GetInt(file_, "s", "K", 99), expected)
        << "value \"" << value << "\"";
  }
  EXPECT_EQ(Profile::GetInt(file_, "S", "missing", 99), 99);
  EXPECT_EQ(Profile::GetInt(dir_.File("none.ini"), "S", "k", -3), -3);
}

struct WriteRow {
  std::string before;  // "" for no file
  std::string section;
  std::optional<std::string> key;
  std::optional<std::string> value;
  std::string after;
};

TEST_F(ProfileTest, WritesOnlyTheLinesTheyConcern) {
  const std::string odd =
      "; head\r\n\r\n[A]\r\n  a = 1 ; x\r\nodd line\r\n\r\n";
  const std::vector<WriteRow> rows = {
      // new file: CR LF; then a key appended, then a section
      {"", "S", "k", "v", "[S]\r\nk=v\r\n"},
      {"[S]\r\nk=v\r\n", "s", "j", "w", "[S]\r\nk=v\r\nj=w\r\n"},
      {"[S]\r\nk=v\r\n", "T", "x", "1", "[S]\r\nk=v\r\n[T]\r\nx=1\r\n"},
      // replaced in place with the file's spelling of the key
      {odd + "[B]\r\nb=2", "a", "A", "9",
       "; head\r\n\r\n[A]\r\na=9\r\nodd line\r\n\r\n[B]\r\nb=2"},
      // appended after the last non-blank line of the section
      {odd + "[B]\r\nb=2", "A", "c", "3",
       "; head\r\n\r\n[A]\r\n  a = 1 ; x\r\nodd line\r\nc=3\r\n\r\n[B]\r\nb=2"},
      // LF and CR files keep their line ends; a missing last one is added
      {"[A]\na=1", "A", "b", "2", "[A]\na=1\nb=2\n"},
      {"[A]\ra=1\r", "N", "k", "v", "[A]\ra=1\r[N]\rk=v\r"},
      {"stray", "N", "k", "v", "stray\r\n[N]\r\nk=v\r\n"},
      {"[A]", "A", "k", "v", "[A]\r\nk=v\r\n"},
      // values are written as they are
      {"", "S", "k", " x ; \"y\"", "[S]\r\nk= x ; \"y\"\r\n"},
      {"", "S", "k", "", "[S]\r\nk=\r\n"},
      // deleting keys: every copy in the first section, nothing elsewhere
      {"[A]\na=1\nb=2\nA=3\n[a]\na=4\n", "a", "a", std::nullopt,
       "[A]\nb=2\n[a]\na=4\n"},
      {"[A]\na=1\n", "A", "zz", std::nullopt, "[A]\na=1\n"},
      {"[A]\na=1\n", "B", "a", std::nullopt, "[A]\na=1\n"},
      // deleting sections: through the line before the next section
      {"; c\n[A]\na=1\n; about B\n[B]\nb=2\n[a]\nc=3", "a", std::nullopt,
       std::nullopt, "; c\n[B]\nb=2\n"},
      {"[A]\na=1\n", "B", std::nullopt, std::nullopt, "[A]\na=1\n"},
  };
  for (const WriteRow& row : rows) {
    fs::remove(file_);
    if (!row.before.empty()) Put(row.before);
    std::optional<std::string_view> key, value;
    if (row.key) key = *row.key;
    if (row.value) value = *row.value;
    EXPECT_TRUE(Profile::WriteString(file_, row.section, key, value))
        << "file \"" << row.before << "\"";
    EXPECT_EQ(Bytes(), row.after)
        << "file \"" << row.before << "\" [" << row.section << "]";
    EXPECT_EQ(FolderEntries(), std::vector<std::string>{"test.ini"});
  }
}

TEST_F(ProfileTest, RefusedWritesAndDeletesFromAMissingFileChangeNothing) {
  EXPECT_TRUE(Profile::WriteString(file_, "S", "k", std::nullopt));
  EXPECT_TRUE(Profile::WriteString(file_, "S", std::nullopt, std::nullopt));
  EXPECT_TRUE(FolderEntries().empty());
  const std::string missing_folder = dir_.File("nope") + "/x.ini";
  EXPECT_FALSE(Profile::WriteString(missing_folder, "S", "k", "v"));
  EXPECT_FALSE(fs::exists(dir_.File("nope")));
  Put("[S]\nk=v\n");
  for (const auto& [section, key, value] :
       std::vector<std::tuple<std::string, std::string, std::string>>{
           {"S", "k", "two\nlines"},
           {"S", "k", "cr\r"},
           {"S\nT", "k", "v"},
           {"S]", "k", "v"},
           {"S", "a=b", "v"},
           {"S", " \t", "v"},
       }) {
    EXPECT_FALSE(Write(section, key, value)) << section << "/" << key;
  }
  EXPECT_EQ(Bytes(), "[S]\nk=v\n");
  EXPECT_EQ(FolderEntries(), std::vector<std::string>{"test.ini"});
}

TEST_F(ProfileTest, WritesKeepPermissionsAndLinksAndReplaceTheFile) {
  Put("[S]\nk=v\n");
  fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write |
                             fs::perms::group_read);
  struct stat before {
  }, after{};
  ASSERT_EQ(::stat(file_.c_str(), &before), 0);
  ASSERT_TRUE(Write("S", "k", "w"));
  ASSERT_EQ(::stat(file_.c_str(), &after), 0);
  EXPECT_EQ(after.st_mode & 07777, 0640u);
  // A new file, not the old one written in place: a reader that holds the
  // old one open still sees a complete file.
  EXPECT_NE(after.st_ino, before.st_ino);

  // Written through a symbolic link, the link stays and its file changes.
  const std::string link = dir_.File("link.ini");
  fs::create_symlink(file_, link);
  ASSERT_TRUE(Profile::WriteString(link, "S", "k", "via link"));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Bytes(), "[S]\nk=via link\n");
}

// A killed writer's temporary file goes with the next process's first
// write once it is old; a young one may belong to a writer at work.
TEST_F(ProfileTest, FirstWriteRemovesOldTemporaryFilesOfKilledWriters) {
  Put("[S]\nk=v\n");
  const std::string old_one = file_ + ".qvtmp-999999-0-1";
  const std::string young_one = file_ + ".qvtmp-999999-1-2";
  const std::string other_file = dir_.File("other.ini") + ".qvtmp-999999-0-1";
  for (const std::string& name : {old_one, young_one, other_file}) {
    testing::WriteFileBytes(name, "[S]\nk=");
  }
  const timespec an_hour_ago[2] = {{::time(nullptr) - 3600, 0},
                                   {::time(nullptr) - 3600, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, old_one.c_str(), an_hour_ago, 0), 0);
  ASSERT_EQ(::utimensat(AT_FDCWD, other_file.c_str(), an_hour_ago, 0), 0);
  ASSERT_TRUE(Write("S", "k", "w"));
  std::vector<std::string> names = FolderEntries();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names,
            (std::vector<std::string>{"other.ini.qvtmp-999999-0-1", "test.ini",
                                      "test.ini.qvtmp-999999-1-2"}));
  EXPECT_EQ(Bytes(), "[S]\nk=w\n");
}

TEST_F(ProfileTest, KeepsTheEncodingWhereItCanHoldTheText) {
  // Windows-1252 stays Windows-1252 while the new text fits.
  Put("[S]\r\nk=\xE4\r\n");
  ASSERT_TRUE(Write("S", "j", "ö€"));
  EXPECT_EQ(Bytes(), "[S]\r\nk=\xE4\r\nj=\xF6\x80\r\n");
  // A character it cannot hold turns the whole file into UTF-8.
  ASSERT_TRUE(Write("S", "w", "Ω"));
  EXPECT_EQ(Bytes(), "[S]\r\nk=ä\r\nj=ö€\r\nw=Ω\r\n");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", ""), "ä");
  // Bytes that would read as UTF-8 once the last invalid one is gone are
  // written as UTF-8, so that "Ã¤" does not turn into "ä".
  Put("[S]\nk=\xC3\xA4\nd=\x80\n");
  ASSERT_TRUE(Profile::WriteString(file_, "S", "d", std::nullopt));
  EXPECT_EQ(Bytes(), "[S]\nk=Ã¤\n");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", ""), "Ã¤");
  // UTF-8 with a byte order mark keeps it.
  Put("\xEF\xBB\xBF[S]\nk=v\n");
  ASSERT_TRUE(Write("S", "k", "ü"));
  EXPECT_EQ(Bytes(), "\xEF\xBB\xBF[S]\nk=ü\n");
  // The undefined bytes of Windows-1252 survive a rewrite.
  Put("[S]\n\x81\x8D\x8F\x90\x9D=\xFF\n");
  ASSERT_TRUE(Write("S", "n", "1"));
  EXPECT_EQ(Bytes(), "[S]\n\x81\x8D\x8F\x90\x9D=\xFF\nn=1\n");
}

TEST_F(ProfileTest,
       SeesEveryChangeOnTheNextReadUnderAnySpellingAndListsSections) {
  // Backslash paths name the same file.
  ASSERT_TRUE(Write("S", "k", "v"));
  std::string windows_style = file_;
  std::replace(windows_style.begin(), windows_style.end(), '/', '\\');
  EXPECT_EQ(Profile::GetString(windows_style, "S", "k", ""), "v");
  Put("[S]\nk=1\n");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", ""), "1");
  // Written in place, same size, within the same timestamp tick.
  Put("[S]\nk=2\n");
  EXPECT_EQ(Profile::GetString(file_, "S", "k", ""), "2");
  ASSERT_TRUE(Write("S", "k", "3"));
  EXPECT_EQ(Profile::GetInt(file_, "S", "k", 0), 3);
  fs::remove(file_);
  EXPECT_EQ(Profile::GetString(file_, "S", "k", "gone"), "gone");
  EXPECT_FALSE(Profile::ReadSections(file_).has_value());
  Put("x=0\n[A]\na=1\nA=2\nb = \"q\"\n[B]\n[a]\nc=3\n");
  const auto sections = Profile::ReadSections(file_);
  ASSERT_TRUE(sections.has_value());
  ASSERT_EQ(sections->size(), 2u);
  EXPECT_EQ((*sections)[0].name, "A");
  using Keys = std::vector<std::pair<std::string, std::string>>;
  EXPECT_EQ((*sections)[0].keys, (Keys{{"a", "1"}, {"b", "q"}}));
  EXPECT_EQ((*sections)[1].name, "B");
  EXPECT_TRUE((*sections)[1].keys.empty());
}

}  // namespace
}  // namespace qv::platform
