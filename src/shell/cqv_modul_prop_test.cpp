#include "shell/cqv_modul_prop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "modules/qv_modul_def.h"
#include "shell/cqv_globals.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using testing::CallbackObject;
using testing::RaisesError;

constexpr int32_t kError1000 = -2147220504;

TEST(CQvModulPropTest, NamesTheProjectAndModuleFileWithEitherSeparator) {
  struct Row {
    std::string folder, instance, modul, full_path, project;
  };
  const Row rows[] = {
      {"/p/Haus.qv3", "Haus A", "EZ", "/p/Haus.qv3/Haus A_EZ.qv3", "Haus"},
      {"C:\\P/Mix.qv3", "M", "SY", "C:\\P/Mix.qv3/M_SY.qv3", "Mix"},
      {"", "Haus", "VM", "Haus_VM.qv3", ""},
  };
  auto prop = CreateObjectAs<CQvModulProp>("qvglobal10.CQvModulProp");
  for (const Row& row : rows) {
    prop->Let("ProjektPfad", row.folder);
    prop->Let("Modulname", row.instance);
    prop->Let("Modul", row.modul);
    EXPECT_EQ(prop->Get("FullModulPath"), Variant(row.full_path)) << row.folder;
    EXPECT_EQ(prop->Get("Projektname"), Variant(row.project)) << row.folder;
  }
}

// A module context of module VM, instance "Haus", in /p/Haus.qv3, whose
// global object has a main window with a host application that records
// the messages sent through it.
class SendMessageTest : public ::testing::Test {
 protected:
  SendMessageTest() {
    prop_->set_Modul("VM");
    prop_->set_Modulname("Haus");
    prop_->set_ProjektPfad("/p/Haus.qv3");
    app_->On("SendQvModulMsg", [](InvokeKind, Args) { return Variant(true); });
    window_->On("GetApp",
                [app = app_](InvokeKind, Args) { return Variant(app); });
    ObjectPtr window = window_;
    prop_->QvGlobals()->set_frmMDIParentRef(window);
  }

  // The five arguments of the one message the application received.
  std::vector<Variant> Sent() {
    const auto calls = app_->CallsTo("SendQvModulMsg");
    EXPECT_EQ(calls.size(), 1u);
    return calls.empty() ? std::vector<Variant>{} : calls[0].args;
  }

  std::shared_ptr<CQvModulProp> prop_ = std::make_shared<CQvModulProp>();
  std::shared_ptr<CallbackObject> window_ = std::make_shared<CallbackObject>();
  std::shared_ptr<CallbackObject> app_ = std::make_shared<CallbackObject>();
  ObjectPtr xml_ = std::make_shared<CallbackObject>();
};

TEST_F(SendMessageTest, ModuleValueAddressesAModuleOfThisProject) {
  EXPECT_EQ(prop_->Call("SendQvModulMsg", {int32_t{QvModulEZ}, xml_}),
            Variant(true));
  EXPECT_EQ(Sent(), (std::vector<Variant>{xml_, "/p/Haus.qv3/Haus_VM.qv3",
                                          "/p/Haus.qv3", "EZ", "Haus"}));
  app_->ClearCalls();
  EXPECT_TRUE(prop_->SendQvModulMsg(int16_t{QvModulSY}, xml_, "Keller"));
  EXPECT_EQ(Sent(), (std::vector<Variant>{xml_, "/p/Haus.qv3/Haus_VM.qv3",
                                          "/p/Haus.qv3", "SY", "Keller"}));
}

TEST_F(SendMessageTest, PathAddressesTheModuleFileItNames) {
  app_->On("SendQvModulMsg",
           [](InvokeKind, Args) { return Variant(int32_t{0}); });
  EXPECT_FALSE(prop_->SendQvModulMsg("C:\\Q\\Villa.qv3\\Anbau_sy.qv3", xml_));
  EXPECT_EQ(Sent(), (std::vector<Variant>{xml_, "/p/Haus.qv3/Haus_VM.qv3",
                                          "C:\\Q\\Villa.qv3", "SY", "Anbau"}));
}

TEST_F(SendMessageTest, WrongReceiverFailsBeforeAnythingIsSent) {
  const std::string type_text =
      "Der Parameter QvModul muss vom Type String oder QvModul_t_ sein";
  for (const Variant& bad : {Variant(true), Variant(xml_), Variant(2.0),
                             Variant(), Variant(kNull)}) {
    EXPECT_TRUE(RaisesError([&] { prop_->SendQvModulMsg(bad, xml_); },
                            kError1000, type_text, ""))
        << bad;
  }
  EXPECT_TRUE(RaisesError(
      [&] { prop_->SendQvModulMsg("/q/V.qv3/V_EZ.qv3", xml_, "V"); },
      kError1000,
      "Wenn im Parameter vQvModul ein Pfad angegeben wurde, dann muss der "
      "Parameter sModulName empty sein.",
      ""));
  EXPECT_TRUE(RaisesError(
      [&] { prop_->SendQvModulMsg(int32_t{999}, xml_); }, kError1000,
      "CQvModulDefs->GetExtension: Modul '999' nicht gefunden."));
  EXPECT_EQ(app_->CallCount("SendQvModulMsg"), 0u);

  ObjectPtr none;
  prop_->QvGlobals()->set_frmMDIParentRef(none);
  EXPECT_TRUE(RaisesError([&] { prop_->SendQvModulMsg(int32_t{1}, xml_); }, 91,
                          "Object variable or With block variable not set"));
}

TEST_F(SendMessageTest, HelpFileIsLookedForBesideTheStartApplication) {
  app_->Property("Path", "/opt/qv");
  auto module_app = std::make_shared<CallbackObject>();
  module_app->Property("HelpFile", "C:\\Programme\\qv\\VM\\Heizlast.chm");
  auto form = std::make_shared<CallbackObject>();
  form->On("GetApp",
           [module_app](InvokeKind, Args) { return Variant(module_app); });
  EXPECT_TRUE(RaisesError([&] { prop_->HelpFile(); }, 91,
                          "Object variable or With block variable not set"));
  prop_->Set("frmMDIChild", form);
  EXPECT_EQ(prop_->Get("HelpFile"), Variant("/opt/qv/Heizlast.chm"));
}

TEST_F(SendMessageTest, FormReceivesToolClicksAndHandsOutItsToolbar) {
  EXPECT_EQ(prop_->Call("GetActiveBar"), Variant(nullptr));
  prop_->SendABToolClick("tCut");  // no form: nothing to call
  auto form = std::make_shared<CallbackObject>();
  auto bar = std::make_shared<CallbackObject>();
  form->On("GetActiveBar", [bar](InvokeKind, Args) { return Variant(bar); });
  form->On("ReceiveABToolClick", [](InvokeKind, Args) { return Variant(); });
  prop_->set_frmMDIChild(form);
  EXPECT_EQ(prop_->GetActiveBar(), bar);
  prop_->Call("SendABToolClick", {"tPaste"});
  ASSERT_EQ(form->CallCount("ReceiveABToolClick"), 1u);
  EXPECT_EQ(form->CallsTo("ReceiveABToolClick")[0].args,
            std::vector<Variant>{"tPaste"});

  window_->Property("hWnd", int32_t{0x1234});
  EXPECT_EQ(prop_->Get("HtmlHelpHwnd"), Variant(int32_t{0x1234}));
}

TEST(CQvModulPropTest, ToolbarErrorsCarryTheMemberInFront) {
  CQvModulProp prop;
  const std::string unset = "Object variable or With block variable not set";
  EXPECT_TRUE(RaisesError([&] { prop.SetABToolEnabled("tCut", true); }, 91,
                          "CQvModulProp->SetABToolEnabled: " + unset));
  auto tools = std::make_shared<CallbackObject>();
  tools->On("Item", [](InvokeKind, Args) -> Variant {
    throw Error(-2147220504, "ActiveBar", "Tool nicht gefunden");
  });
  auto bar = std::make_shared<CallbackObject>();
  bar->Property("Tools", tools);
  bar->Property("Bands", tools);
  auto form = std::make_shared<CallbackObject>();
  form->On("GetActiveBar", [bar](InvokeKind, Args) { return Variant(bar); });
  prop.set_frmMDIChild(form);
  using Call = std::function<void()>;
  const std::vector<std::pair<std::string, Call>> calls = {
      {"SetABToolEnabled", [&] { prop.SetABToolEnabled("tX", true); }},
      {"GetABToolEnabled", [&] { prop.GetABToolEnabled("tX"); }},
      {"ActivebarTrackPopup", [&] { prop.ActivebarTrackPopup("bdX"); }},
      {"ActivebarShowToolBar", [&] { prop.ActivebarShowToolBar("bdX"); }},
  };
  for (const auto& [member, call] : calls) {
    EXPECT_TRUE(RaisesError(call, kError1000,
                            "CQvModulProp->" + member + ": Tool nicht gefunden",
                            "ActiveBar"));
  }
}

TEST(CQvModulPropTest, BearbeiterpfadIsRetiredBothWays) {
  auto prop = CreateObjectAs<CQvModulProp>("qvglobal10.CQvModulProp");
  const std::string text =
      "CQvModulProp: Die Methode Bearbeiterpfad wird nicht mehr unterstützt";
  EXPECT_TRUE(
      RaisesError([&] { prop->Get("Bearbeiterpfad"); }, kError1000, text, ""));
  EXPECT_TRUE(RaisesError([&] { prop->Let("Bearbeiterpfad", "/x"); },
                          kError1000, text, ""));
}

}  // namespace
}  // namespace qv
