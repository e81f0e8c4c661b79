#include "modules/cpr_func.h"

#include <gtest/gtest.h>

#include <string>

#include "com/class_factory.h"
#include "com/error.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

// Object error 1000 with `description` and no source.
template <class F>
::testing::AssertionResult Raises1000(F&& call, std::string_view description) {
  return qv::testing::RaisesError(call, err::kObjectError1000, description, "");
}

class CPRFuncTest : public ::testing::Test {
 protected:
  CPRFunc_t_ pr_;
};

TEST_F(CPRFuncTest, ModuleAndNameFromFileNames) {
  EXPECT_EQ(pr_.FileNameToModul("C:\\P\\Haus_A_VM.qv3"), "VM");
  EXPECT_EQ(pr_.FileNameToModulName("C:\\P\\Haus_A_VM.qv3"), "Haus_A");
  // Underscores in folder names do not count.
  EXPECT_TRUE(Raises1000([&] { pr_.FileNameToModul("/home/a_b/Haus.qv3"); },
                         "Kein Modul in Filename /home/a_b/Haus.qv3 gefunden"));
  EXPECT_EQ(pr_.FileNameToModulName("C:\\a_b\\c_d\\Haus_LP.qv3"), "Haus");
  EXPECT_EQ(pr_.FileNameToModul("Müller_Haus_VM.qv3"), "VM");
  EXPECT_EQ(pr_.FileNameToModulName("Müller_Haus_VM.qv3"), "Müller_Haus");
  EXPECT_EQ(pr_.FileNameToModulName("/p/Größe_Wärme.qv3"), "Größe");
  EXPECT_EQ(pr_.FileNameToModul("/p/Größe_Wärme.qv3"), "Wärme");
  EXPECT_EQ(pr_.FileNameToModul("Haus_.qv3"), "");
  EXPECT_EQ(pr_.FileNameToModulName("Haus_.qv3"), "Haus");
  EXPECT_EQ(pr_.FileNameToModulName("_VM.qv3"), "");
  EXPECT_TRUE(Raises1000([&] { pr_.FileNameToModul("Haus.qv3"); },
                         "Kein Modul in Filename Haus.qv3 gefunden"));
  EXPECT_TRUE(
      Raises1000([&] { pr_.FileNameToModulName("C:\\P\\Haus.qv3"); },
                 "Kein Modulname in Filename C:\\P\\Haus.qv3 gefunden"));
  EXPECT_TRUE(Raises1000([&] { pr_.FileNameToModul(""); },
                         "Kein Modul in Filename  gefunden"));
}

TEST_F(CPRFuncTest, ModuleToFileName) {
  EXPECT_EQ(pr_.ModulToFileName("Haus_A", "VM"), "Haus_A_VM.qv3");
  EXPECT_EQ(pr_.ModulToFileName("", "VM"), "_VM.qv3");
  EXPECT_EQ(pr_.ModulToFileName("Müller_Haus", "EZ"), "Müller_Haus_EZ.qv3");
}

TEST_F(CPRFuncTest, ProjectFoldersAndQvFiles) {
  EXPECT_EQ(pr_.PathToProjName("C:\\P\\Haus.qv3"), "Haus");
  EXPECT_EQ(pr_.ProjNameToPath("C:\\P", "Haus"), "C:\\P\\Haus.qv3");

  EXPECT_TRUE(pr_.IsPathProjectFolder("/home/p/Y.QV3"));
  EXPECT_FALSE(pr_.IsPathProjectFolder("/home/X.Qv3/Y.qv3"));
  EXPECT_FALSE(pr_.IsPathProjectFolder("/home/p/Y.qv3x"));
  EXPECT_TRUE(pr_.IsPathProjectFolder("Y.qv3"));
  EXPECT_TRUE(pr_.IsQvFile("a.QV3"));
  EXPECT_FALSE(pr_.IsQvFile("a.qv3.bak"));
}

TEST(CPRFuncByNameTest, CreatedAndCalledByName) {
  ObjectPtr pr = CreateObject("qvglobal10.CPRFunc_t_");
  EXPECT_EQ(pr->Call("FileNameToModulName", {"/home/p/Haus_A_VM.qv3"}),
            Variant("Haus_A"));
  EXPECT_EQ(pr->Call("isqvfile", {"x.qv3"}), Variant(true));
  EXPECT_EQ(pr->Call("ProjNameToPath", {"/p", "X"}), Variant("/p/X.qv3"));
}

}  // namespace
}  // namespace qv
