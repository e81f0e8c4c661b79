// Runs the built qv tool's `modules` and `name` commands and checks their
// exact output and exit status.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "com/text.h"
#include "testing/run_tool.h"
#include "testing/temp_dir.h"

#ifdef QVGLOBAL_QV_TOOL

namespace qv {
namespace {

using ::qv::testing::Lines;
using ::qv::testing::RunQv;
using ::qv::testing::ToolRun;

// The character column at which `what` starts in `line`.
size_t Column(const std::string& line, const std::string& what) {
  const size_t byte = line.find(what);
  EXPECT_NE(byte, std::string::npos) << what << " not in " << line;
  return text::Len(line.substr(0, byte));
}

TEST(QvModulesToolTest, OneModuleListsEveryField) {
  EXPECT_EQ(
      RunQv("modules vm"),
      (ToolRun{0,
               "m_eModul                               18\n"
               "m_sDescription                         Heizlast\n"
               "m_sQvSpecDesc                          EN 12831\n"
               "m_sExtension                           VM\n"
               "m_aModuls                              VM,EZ,GL\n"
               "m_aCatalogs                            VM,GL\n"
               "m_bMulti                               False\n"
               "m_bIsModulWithBearbeitungsstand        True\n"
               "m_bIsModulToCopyFromUser               True\n"
               "m_bIsVisibleInTree                     True\n"
               "m_bIsModulWithBearbeitungsaenderungen  True\n"
               "m_bStartShowFullSize                   False\n"
               "m_aQuickClicks                         DX,GL,CE,SY\n"
               "m_sRLTCalcModulClass                   QVNOKERN10.QvKern\n"
               "m_bND                                  False\n"
               "m_eStartSize                           3 (mmssStartAlgo1)\n"
               "m_sStartSizeWidth                      0\n"
               "m_sStartSizeHeight                     0\n"
               "m_bShowPicInDX                         False\n",
               ""}));
}

TEST(QvModulesToolTest, TableWithAlignedColumns) {
  const ToolRun run = RunQv("modules");
  EXPECT_EQ(run.status, 0);
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 17u);
  EXPECT_EQ(lines[0].substr(0, 17), "Code  Enum  Descr");
  // Columns line up in characters, umlauts included.
  const size_t special = Column(lines[0], "Special description");
  EXPECT_EQ(Column(lines[5], "EN 12831"), special);  // VM, Heizlast
  EXPECT_EQ(Column(lines[6], "DIN4701"), special);   // NO, Wärmebedarf
  EXPECT_EQ(Column(lines[9], "VDI2078/VDI2067"), special);
  EXPECT_NE(lines[9].find("CE,EZ,GL  CE,GL,TRY"), std::string::npos);
  EXPECT_NE(lines[2].find("mmssAbsolute 870x600"), std::string::npos);
}

TEST(QvNameToolTest, ModuleFilesAndFailuresWhileTheRestIsStillRead) {
  EXPECT_EQ(RunQv("name 'C:\\P\\Haus.qv3' 'Müller_Haus_EZ.qv3' Haus.qv3"),
            (ToolRun{1,
                     "C:\\P\\Haus.qv3\n"
                     "Müller_Haus_EZ.qv3\n"
                     "  module code      EZ\n"
                     "  module instance  Müller_Haus\n"
                     "  module file      yes\n"
                     "Haus.qv3\n",
                     "Kein Modul in Filename C:\\P\\Haus.qv3 gefunden\n"
                     "Kein Modul in Filename Haus.qv3 gefunden\n"}));
}

TEST(QvNameToolTest, ProjectFolders) {
  qv::testing::TempDir tmp;
  const std::string project = tmp.File("Haus.qv3");
  std::filesystem::create_directory(project);
  EXPECT_EQ(RunQv("name '" + project + "' /x/A.qv3/B.qv3/ /x/"),
            (ToolRun{0,
                     project + "\n"
                               "  project folder   yes\n"
                               "  project name     Haus\n"
                               "/x/A.qv3/B.qv3/\n"
                               "  project folder   no\n"
                               "/x/\n"
                               "  project folder   no\n",
                     ""}));
}

}  // namespace
}  // namespace qv

#endif  // QVGLOBAL_QV_TOOL
