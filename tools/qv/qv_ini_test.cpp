// Runs `qv ini` as support staff would: values as the library reads them,
// writes and deletes, and exit status 1 with a message for missing files and
// failed writes.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "testing/run_tool.h"
#include "testing/temp_dir.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

class QvIniToolTest : public ::testing::Test {
 protected:
  ToolRun Ini(const std::string& args) { return RunQv("ini " + args); }
  std::string Quoted() const { return "'" + file_ + "'"; }

  testing::TempDir dir_;
  std::string file_ = dir_.File("user.ini");
};

TEST_F(QvIniToolTest, SetGetDeleteAndShow) {
  ASSERT_EQ(Ini("set " + Quoted() + " Fenster Breite 800").status, 0);
  ASSERT_EQ(Ini("set " + Quoted() + " Fenster Titel '\" Raumbuch \"'").status,
            0);
  ASSERT_EQ(Ini("set " + Quoted() + " Pfade Projekt /srv/qv").status, 0);

  EXPECT_EQ(Ini("get " + Quoted() + " FENSTER titel"),
            (ToolRun{0, " Raumbuch \n", ""}));
  EXPECT_EQ(Ini("get " + Quoted() + " Fenster Fehlt").out, "\n");

  EXPECT_EQ(Ini("show " + Quoted()),
            (ToolRun{0,
                     "[Fenster]\n  Breite=800\n  Titel= Raumbuch \n[Pfade]\n"
                     "  Projekt=/srv/qv\n",
                     ""}));
  EXPECT_EQ(Ini("show " + Quoted() + " pfade").out,
            "[Pfade]\n  Projekt=/srv/qv\n");

  EXPECT_EQ(Ini("delete " + Quoted() + " Fenster Breite").status, 0);
  EXPECT_EQ(Ini("delete " + Quoted() + " Pfade").status, 0);
  EXPECT_EQ(Ini("show " + Quoted()).out, "[Fenster]\n  Titel= Raumbuch \n");
}

TEST_F(QvIniToolTest, MissingFilesAndFailedWritesExitWithStatus1) {
  for (const char* command : {"get", "show"}) {
    const std::string rest = command == std::string("get") ? " S K" : " S";
    EXPECT_EQ(Ini(std::string(command) + " " + Quoted() + rest),
              (ToolRun{1, "", "qv ini: file not found: " + file_ + "\n"}))
        << command;
  }
  const std::string nowhere = dir_.File("fehlt") + "/user.ini";
  EXPECT_EQ(Ini("set '" + nowhere + "' S K V"),
            (ToolRun{1, "", "qv ini: could not write " + nowhere + "\n"}));
  // Deleting from a file that is not there succeeds.
  EXPECT_EQ(Ini("delete " + Quoted() + " S").status, 0);
}

TEST_F(QvIniToolTest, ContentIsPrintedWithControlsEscaped) {
  std::ofstream(file_)
      << "[S]\r\nk=\x1b]0;owned\x07 x\r\n[T\x1b[31m]\r\nn=1\r\n";
  EXPECT_EQ(Ini("show " + Quoted()).out,
            "[S]\n  k=\\x1b]0;owned\\x07 x\n[T\\x1b[31m]\n  n=1\n");
  EXPECT_EQ(Ini("get " + Quoted() + " S k").out, "\\x1b]0;owned\\x07 x\n");
}

}  // namespace
}  // namespace qv

#endif  // QVGLOBAL_QV_TOOL
