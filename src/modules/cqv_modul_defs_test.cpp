#include "modules/cqv_modul_defs.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

// Object error 1000 with `description` and no source.
template <class F>
::testing::AssertionResult Raises1000(F&& call, std::string_view description) {
  return qv::testing::RaisesError(call, err::kObjectError1000, description, "");
}

std::vector<std::string> Strings(const SafeArray& array) {
  std::vector<std::string> out;
  for (const Variant& v : array) out.push_back(v.ToString());
  return out;
}

class CQvModulDefsTest : public ::testing::Test {
 protected:
  CQvModulDefs defs_;
};

TEST_F(CQvModulDefsTest, TableOrderAndEnumerationValues) {
  const SafeArray all = defs_.GetArrayQvModulDefs();
  ASSERT_EQ(all.LBound(), 0);
  ASSERT_EQ(all.UBound(), 15);
  const std::vector<std::string> codes = {"DX", "JS", "GL", "ZU", "VM", "NO",
                                          "SY", "LP", "CE", "MU", "OD", "IG",
                                          "EZ", "UF", "TQ", "PN"};
  for (int32_t i = 0; i <= 15; ++i) {
    auto def = all[i].ToObjectAs<CQvModulDef>();
    ASSERT_NE(def, nullptr);
    EXPECT_EQ(def->m_sExtension, codes[i]);
    // The records handed out are the table's own objects.
    EXPECT_EQ(def, defs_.GetQvModulDef(codes[i]));
    EXPECT_FALSE(def->m_bStartShowFullSize);
    // The four behaviour flags always go together.
    EXPECT_EQ(def->m_bIsModulToCopyFromUser,
              def->m_bIsModulWithBearbeitungsstand);
    EXPECT_EQ(def->m_bIsVisibleInTree, def->m_bIsModulWithBearbeitungsstand);
    EXPECT_EQ(def->m_bIsModulWithBearbeitungsaenderungen,
              def->m_bIsModulWithBearbeitungsstand);
  }
  EXPECT_EQ(defs_.StrToModul("EZ"), 1);
  EXPECT_EQ(defs_.StrToModul("vm"), QvModulVM);
  EXPECT_EQ(defs_.StrToModul("PN"), 14);
  EXPECT_EQ(defs_.GetExtension(QvModulGL), "GL");
  EXPECT_EQ(defs_.GetExtension(static_cast<QvModul_t_>(16)), "JS");
  EXPECT_EQ(defs_.BuildDBName("Haus_A", QvModulVM), "Haus_A_VM.qv3");
}

TEST_F(CQvModulDefsTest, FlagsDescriptionsCatalogsAndProjectModules) {
  EXPECT_TRUE(defs_.IsMultiProjectModul("lp"));
  EXPECT_FALSE(defs_.IsMultiProjectModul("VM"));
  EXPECT_FALSE(defs_.IsModulWithBearbeitungsstand("DX"));
  EXPECT_TRUE(defs_.IsModulWithBearbeitungsaenderungen("SY"));
  EXPECT_FALSE(defs_.IsModulToCopyFromUser("ez"));
  EXPECT_EQ(defs_.GetModulDescription("NO"), "Wärmebedarf");
  EXPECT_EQ(defs_.GetModulDescription("ce"), "Kühllast/Gebäudesimulation");
  EXPECT_EQ(defs_.GetModulDescription("MU"), "Aufmaß");
  EXPECT_EQ(defs_.GetQvSpecDesc("VM"), "EN 12831");
  EXPECT_EQ(defs_.GetQvSpecDesc("EZ"), "Raumbuch");  // its own description
  EXPECT_EQ(defs_.GetRLTCalcModulClass("VM"), "QVNOKERN10.QvKern");
  EXPECT_EQ(defs_.GetRLTCalcModulClass("NO"), "QVNOKERN10.QvKern");
  EXPECT_EQ(defs_.GetRLTCalcModulClass("LP"), "");
  EXPECT_FALSE(defs_.GetND("VM"));
  EXPECT_TRUE(defs_.GetND("NO"));
  EXPECT_TRUE(defs_.ShowPicInDX("OD"));
  EXPECT_FALSE(defs_.ShowPicInDX("TQ"));
  const Variant ce = defs_.GetCatalogs("CE");
  ASSERT_TRUE(ce.IsArray());
  EXPECT_EQ(ce.ToArray().LBound(), 0);
  EXPECT_EQ(Strings(ce.ToArray()),
            (std::vector<std::string>{"CE", "GL", "TRY"}));
  EXPECT_EQ(Strings(defs_.GetCatalogs("pn").ToArray()),
            (std::vector<std::string>{"PN", "TRY", "4710"}));
  EXPECT_EQ(Strings(defs_.GetCatalogs("ZU").ToArray()),
            (std::vector<std::string>{"LP"}));
  // Catalogue names are not module codes.
  EXPECT_FALSE(defs_.IsProjectModul("TRY"));
  EXPECT_TRUE(defs_.IsProjectModul("vm"));
  EXPECT_FALSE(defs_.IsProjectModul("XY"));
  EXPECT_FALSE(defs_.IsProjectModul(" VM"));  // no trimming
  EXPECT_TRUE(defs_.IsProjectDBModul("ez"));
  EXPECT_TRUE(defs_.IsProjectDBModul("DX"));
  EXPECT_FALSE(defs_.IsProjectDBModul("XY"));
  EXPECT_FALSE(defs_.IsProjectDBModul("TRY"));

  auto codes = defs_.GetAllModulExtensions();
  EXPECT_EQ(Strings(codes->Keys()),
            (std::vector<std::string>{"DX", "JS", "GL", "ZU", "VM", "EZ", "NO",
                                      "SY", "LP", "CE", "MU", "OD", "IG", "UF",
                                      "TQ", "PN"}));
  EXPECT_EQ(codes->Items(), codes->Keys());
  EXPECT_TRUE(codes->Exists(Variant("vm")));  // text compare
  codes->Remove(Variant("VM"));
  EXPECT_NE(defs_.GetAllModulExtensions(), codes);
  EXPECT_EQ(defs_.GetAllModulExtensions()->Count(), 16);
}

TEST_F(CQvModulDefsTest, NotFoundTexts) {
  const std::string ext = "CQvModulDefs->GetExtension: Modul '";
  const std::vector<std::pair<std::function<void()>, std::string>> direct = {
      {[&] { defs_.GetQvModulDef("XY"); },
       "CQvModulDefs->GetProjectModul: Finde zu 'XY' kein Struktur"},
      {[&] { defs_.StrToModul("Ry"); },
       "CQvModulDefs->GetProjectModul: Finde zu 'Ry' kein Struktur"},
      {[&] { defs_.IsMultiProjectModul(""); },
       "CQvModulDefs->IsMultiProjectModul: Modul '' nicht gefunden."},
      {[&] { defs_.GetExtension(QvModulXo); }, ext + "8' nicht gefunden."},
      {[&] { defs_.GetExtension(QvModulBA); }, ext + "3' nicht gefunden."},
      {[&] { defs_.BuildDBName("Haus", QvModulRy); },
       ext + "15' nicht gefunden."},
  };
  for (const auto& [call, text] : direct) EXPECT_TRUE(Raises1000(call, text));
  const std::vector<std::pair<std::string, std::string>> methods = {
      {"IsModulWithBearbeitungsstand", "Modul '"},
      {"IsModulWithBearbeitungsaenderungen", "Modul '"},
      {"IsModulToCopyFromUser", "Modul '"},
      {"GetModulDescription", "Beschreibung für das Modul '"},
      {"GetQvSpecDesc", "Spezielle Beschreibung für das Modul '"},
      {"GetCatalogs", "Katalog für das Modul '"},
      {"GetRLTCalcModulClass", "Katalog für das Modul '"},
      {"GetND", "Katalog für das Modul '"},
      {"ShowPicInDX", "Katalog für das Modul '"},
  };
  for (const auto& [method, what] : methods) {
    EXPECT_TRUE(Raises1000(
        [&] { defs_.Call(method, {"XY"}); },
        "CQvModulDefs->" + method + ": " + what + "XY' nicht gefunden."));
  }
}

TEST(CQvModulDefsByNameTest, CreatedAndCalledByName) {
  ObjectPtr defs = CreateObject("qvglobal10.CQvModulDefs");
  EXPECT_EQ(defs->Call("BuildDBName", {"Haus", int16_t{18}}),
            Variant("Haus_VM.qv3"));
  const Variant all = defs->Call("GetArrayQvModulDefs");
  ASSERT_TRUE(all.IsArray());
  ObjectPtr vm = all.ToArray()[4].ToObject();
  EXPECT_EQ(vm, defs->Call("GetQvModulDef", {"VM"}).ToObject());
  // Enumerations come out as Long.
  EXPECT_EQ(vm->Get("m_eModul"), Variant(int32_t{18}));
}

}  // namespace
}  // namespace qv
