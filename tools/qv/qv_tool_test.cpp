// Runs the built qv tool as a user would and checks its exact output and
// exit status.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "testing/run_tool.h"
#include "testing/temp_dir.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

namespace fs = std::filesystem;

using ::qv::testing::Lines;
using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

TEST(QvToolTest, KeysPrintsOneKeyStringPerLineUpToAnUnknownCode) {
  const std::string unknown =
      "CQVActiveBar->ABKeyCodeToSendKeyStr: Nicht zuweisbarer KeyCode ";
  EXPECT_EQ(RunQv("keys 0 1 75"), (ToolRun{0, "\n^a\n%{BACKSPACE}\n", ""}));
  EXPECT_EQ(RunQv("keys 49 -1 2"), (ToolRun{1, "+{F1}\n", unknown + "-1\n"}));
}

TEST(QvToolTest, KeysRefusesWhatIsNoKeyCodeBeforePrintingAnything) {
  const std::string not_number = "key code is not a whole number: ";
  const std::string out_of_range = "key code out of range (-32768 to 32767): ";
  struct Case {
    const char* args;
    std::string err;
  };
  const std::vector<Case> cases = {
      {"keys ''", not_number + "''"},
      {"keys 0 x", not_number + "'x'"},
      {"keys 1.5", not_number + "'1.5'"},
      {"keys ' 7'", not_number + "' 7'"},
      {"keys 12abc", not_number + "'12abc'"},
      {"keys +-5", not_number + "'+-5'"},
      {"keys 32768", out_of_range + "'32768'"},
      {"keys 99999999999999999999", out_of_range + "'99999999999999999999'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args);
    EXPECT_EQ(RunQv(c.args), (ToolRun{1, "", c.err + "\n"}));
  }
  EXPECT_EQ(RunQv("keys +37"), (ToolRun{0, "{F11}\n", ""}));
}

TEST(QvToolTest, UsageErrorsExitWithStatusTwo) {
  for (const char* args : {"keys", "nosuchcommand", ""}) {
    SCOPED_TRACE(args);
    const ToolRun run = RunQv(args);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err, "");
  }
}

TEST(QvToolTest, VersionAndHelp) {
  EXPECT_EQ(RunQv("--version"), (ToolRun{0, "qv 1.0.0\n", ""}));
  const ToolRun help = RunQv("--help");
  EXPECT_EQ(help.status, 0);
  for (const char* command : {"classes", "demo", "keys"}) {
    EXPECT_NE(help.out.find(std::string("\n  ") + command + " "),
              std::string::npos)
        << command;
  }
}

TEST(QvToolTest, ClassesListsTheProgIdsInRegistryOrder) {
  const ToolRun run = RunQv("classes");
  EXPECT_EQ(run.status, 0);
  const std::vector<std::string> progids = Lines(run.out);
  ASSERT_EQ(progids.size(), 25u);
  EXPECT_EQ(progids.front(), "QvCentral10.QvProperties");
  EXPECT_EQ(progids[1], "qvglobal10.CARBefDetSecParam_t_");
  EXPECT_EQ(progids.back(), "VBA.Collection");
}

TEST(QvToolTest, ClassesShowsOneInterface) {
  // Any letter case finds the class; the registered spelling is shown.
  EXPECT_EQ(RunQv("classes QVGLOBAL10.cqvarevents"),
            (ToolRun{0,
                     "qvglobal10.CQvAREvents (CQvAREvents)\n"
                     "   1  REBefPrRowDetSec  method       (Object, Array&)\n"
                     "events:\n"
                     "      BefPrRowDetSec(Object ARBefDetSecParam, Array& "
                     "vChangeRowValues)\n",
                     ""}));
  const std::vector<std::string> bar =
      Lines(RunQv("classes qvglobal10.CQVActiveBar").out);
  ASSERT_EQ(bar.size(), 22u);
  EXPECT_EQ(bar[21],
            "  21  ABKeyCodeToSendKeyStr           method       (Integer&)");
  const ToolRun param = RunQv("classes qvglobal10.CARBefDetSecParam_t_");
  EXPECT_EQ(Lines(param.out)[1], "   1  RowQvDs          get/let      = Long");
  EXPECT_EQ(Lines(param.out)[5], "   5  WasLastRowEmpty  get");
}

TEST(QvToolTest, ClassesOfAnUnknownProgIdFails) {
  EXPECT_EQ(RunQv("classes qvglobal10.NoSuchClass"),
            (ToolRun{1, "", "ActiveX component can't create object\n"}));
}

TEST(QvToolTest, DemoRemovesItsTemporaryFolder) {
  testing::TempDir tmp;
  const ToolRun run = RunQv("demo", "TMPDIR='" + tmp.path() + "'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out.rfind("qv demo in " + tmp.path() + "/qv-demo-", 0), 0u)
      << run.out;
  EXPECT_NE(run.out.find("\n1. Toolbar key codes\n"), std::string::npos);
  EXPECT_NE(
      run.out.find("Ctrl+F1 is recorded as 39, which reads back as \"^{F2}\""),
      std::string::npos);
  EXPECT_NE(run.out.find("  its global object shares the container: yes\n"
                         "  copied 48 rooms of table \"raum\" to the "
                         "clipboard\n  closing the project connection "
                         "empties the clipboard: yes\n"),
            std::string::npos);
  EXPECT_EQ(run.out.substr(run.out.size() - 7), "\nDone.\n");
  EXPECT_TRUE(fs::is_empty(tmp.path()));
}

TEST(QvToolTest, DemoKeepsTheFolderGivenWithDir) {
  testing::TempDir tmp;
  const std::string dir = tmp.File("demo dir");
  const ToolRun run = RunQv("demo --dir '" + dir + "'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Lines(run.out).at(0), "qv demo in " + dir);
  // The settings step restores a saved form; its file stays in the folder.
  for (const char* line :
       {"  a form never saved opens centred: left 640, top 300, 640 x 480\n",
        "  after saving and reopening:     left 40, top 30, 800 x 600\n",
        "      Raster=-1\n"}) {
    EXPECT_NE(run.out.find(line), std::string::npos) << line;
  }
  EXPECT_EQ(RunQv("ini get '" + dir + "/demo.ini' frmDemo width"),
            (ToolRun{0, "800\n", ""}));
}

// An error no command expects (here the file system refusing a folder under
// a plain file) ends the tool with a message and status 2, not an abort.
TEST(QvToolTest, UnexpectedErrorsExitWithStatusTwo) {
  testing::TempDir tmp;
  const std::string file = tmp.File("plain");
  std::ofstream(file) << "x";
  const ToolRun run = RunQv("demo --dir '" + file + "/sub'");
  EXPECT_EQ(run.status, 2);
  // The standard library words the error; the tool passes it on unchanged.
  std::string refusal;
  try {
    fs::create_directories(file + "/sub");
  } catch (const fs::filesystem_error& e) {
    refusal = e.what();
  }
  ASSERT_FALSE(refusal.empty());
  EXPECT_EQ(run.err, "qv: unexpected error: " + refusal + "\n");
}

}  // namespace
}  // namespace qv

#else  // !QVGLOBAL_QV_TOOL

TEST(QvToolTest, ToolIsBuilt) {
  GTEST_SKIP() << "the qv tool is not part of this build";
}

#endif  // QVGLOBAL_QV_TOOL
