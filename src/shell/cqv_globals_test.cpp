#include "shell/cqv_globals.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "data/cqv_db_container.h"
#include "messages/app_context.h"
#include "platform/file_system.h"
#include "records/cqv_clipboard.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"
#include "testing/scoped_env.h"
#include "testing/temp_dir.h"

namespace qv {
namespace {

namespace fs = std::filesystem;
using testing::CallbackObject;
using testing::RaisesError;

constexpr int32_t kError1000 = -2147220504;

// Every test starts with no global object on its thread and the settings
// files in a temporary folder.
class CQvGlobalsTest : public ::testing::Test {
 protected:
  CQvGlobalsTest() {
    env_.Set("QV_COMMON_APPDATA", dir_.File("appdata"));
    env_.Set("QV_ENVIROMENT_ASC", dir_.File("enviroment.asc"));
  }

  std::shared_ptr<CQvGlobals> Create() {
    return CreateObjectAs<CQvGlobals>("qvglobal10.CQvGlobals");
  }

  testing::TempDir dir_;
  testing::ScopedEnv env_;
};

TEST_F(CQvGlobalsTest, ObjectsOfOneThreadShareOneStateAndOtherThreadsTheirOwn) {
  auto first = Create();
  auto second = Create();
  EXPECT_EQ(first->QvDbContainer(), second->QvDbContainer());
  EXPECT_EQ(first->QvClipboard(), second->QvClipboard());
  EXPECT_EQ(first->QvComEvents(), second->QvComEvents());
  EXPECT_EQ(CurrentClipboard(), first->QvClipboard());
  EXPECT_EQ(first->ToolTipLevel(), 1);
  second->Let("ToolTipLevel", int16_t{3});
  second->Let("KurzBezBearbeiter", "MM");
  second->Let("QvLanguage", int32_t{qvlEnglish});
  EXPECT_EQ(first->Get("ToolTipLevel"), Variant(int16_t{3}));
  EXPECT_EQ(first->KurzBezBearbeiter(), "MM");
  EXPECT_EQ(AppContext::Current()->Language(), qvlEnglish);

  std::shared_ptr<CQvDbContainer> other_container;
  std::shared_ptr<CQvClipboard> other_clipboard, other_current;
  int16_t other_level = 0;
  std::thread([&] {
    CQvGlobals elsewhere;
    other_container = elsewhere.QvDbContainer();
    other_clipboard = elsewhere.QvClipboard();
    other_current = CurrentClipboard();
    other_level = elsewhere.ToolTipLevel();
  }).join();
  EXPECT_NE(other_container, first->QvDbContainer());
  EXPECT_NE(other_clipboard, first->QvClipboard());
  EXPECT_EQ(other_current, other_clipboard);
  EXPECT_EQ(other_level, 1);
  EXPECT_EQ(CurrentClipboard(), first->QvClipboard());
}

TEST_F(CQvGlobalsTest, LastObjectReleasesContainerClipboardAndMainWindow) {
  auto first = Create();
  auto second = Create();
  std::weak_ptr<CQvDbContainer> container = first->QvDbContainer();
  std::weak_ptr<CQvClipboard> clipboard = first->QvClipboard();
  auto window = std::make_shared<CallbackObject>();
  std::weak_ptr<Object> weak_window = window;
  first->Set("frmMDIParentRef", window);
  window.reset();
  first->set_ToolTipLevel(5);
  first->set_LangBezBearbeiter("Max Muster");
  first->set_QvLanguage(qvlGerman);

  first.reset();
  EXPECT_FALSE(container.expired());
  EXPECT_FALSE(weak_window.expired());
  second.reset();
  EXPECT_TRUE(container.expired());
  EXPECT_TRUE(clipboard.expired());
  EXPECT_TRUE(weak_window.expired());
  EXPECT_EQ(CurrentClipboard(), nullptr);
  EXPECT_EQ(AppContext::Current()->Language(), qvlNoLanguage);

  // A new first object creates new parts; names and language stay.
  auto again = Create();
  EXPECT_NE(again->QvDbContainer(), nullptr);
  EXPECT_EQ(again->frmMDIParentRef(), nullptr);
  EXPECT_EQ(again->ToolTipLevel(), 1);
  EXPECT_EQ(again->LangBezBearbeiter(), "Max Muster");
  EXPECT_EQ(again->QvLanguage(), qvlGerman);
}

// A file system that counts the folders it creates.
class CountingFileSystem : public platform::FileSystem {
 public:
  void CreateFolder(std::string_view path) override {
    ++created;
    platform::FileSystem::CreateFolder(path);
  }
  int created = 0;
};

TEST_F(CQvGlobalsTest, QvIniFoldersAreCreatedOnceAndFailuresRaise1000) {
  auto counting = std::make_shared<CountingFileSystem>();
  platform::FileSystem::Install(counting);
  auto globals = Create();
  const std::string expected =
      dir_.File("appdata") + "/qv-software/Orbis/qv.ini";
  EXPECT_EQ(globals->Call("GetQVIniFile"), Variant(expected));
  EXPECT_EQ(counting->created, 3);  // appdata, qv-software, Orbis
  EXPECT_TRUE(fs::is_directory(dir_.File("appdata") + "/qv-software/Orbis"));
  EXPECT_FALSE(fs::exists(expected));
  EXPECT_EQ(globals->GetQVIniFile(), expected);
  EXPECT_EQ(counting->created, 3);
  platform::FileSystem::Reset();

  std::ofstream(dir_.File("plain")) << "a file, not a folder";
  env_.Set("QV_COMMON_APPDATA", dir_.File("plain"));
  EXPECT_TRUE(RaisesError([&] { globals->GetQVIniFile(); }, kError1000,
                          "Kann das Verzeichnis für die qv.ini nicht erzeugen",
                          ""));
}

TEST_F(CQvGlobalsTest, EditorFolderLiesInTheBaseFolder) {
  {
    auto globals = Create();  // no enviroment.asc: the suite folder
    globals->set_KurzBezBearbeiter("MM");
    EXPECT_EQ(globals->GetBearbeiterPfad(),
              dir_.File("appdata") + "/qv-software/MM.qv3");
  }
  std::ofstream(dir_.File("enviroment.asc")) << "BasePath = C:\\qv\\Basis\n";
  auto globals = Create();  // the path service is read by the first object
  EXPECT_EQ(globals->GetBearbeiterPfad(), "C:\\qv\\Basis\\MM.qv3");
  EXPECT_EQ(globals->Call("GetDXIniFile"),
            Variant("C:\\qv\\Basis\\MM.qv3\\DX.INI"));
}

// How a member of the global object reaches the main window.
struct ForwardRow {
  std::string member;  // of CQvGlobals, invoked by name
  InvokeKind kind;
  std::vector<Variant> args;
  std::string window_member;  // called on the main window
  Variant answer;             // what the main window returns
  Variant without_window;     // the result when there is none
};

std::vector<ForwardRow> ForwardRows(const ObjectPtr& thing) {
  const auto M = InvokeKind::kMethod;
  const Variant nothing{nullptr};
  return {
      {"SetABToolEnabled", M, {"tCut", false}, "SetABToolEnabled", {}, {}},
      {"GetABToolEnabled", M, {"tCut"}, "GetABToolEnabled", true, false},
      {"IsFormForCurrentActiveBar",
       M,
       {thing},
       "IsFormForCurrentActiveBar",
       true,
       false},
      {"ActivebarTrackPopup", M, {"bdQVPopup"}, "ActivebarTrackPopup", {}, {}},
      {"GetMDIParentAB", M, {}, "GetMDIParentAB", thing, nothing},
      {"SetEnabledForms", M, {true}, "SetEnabledForms", {}, {}},
      {"QvIntelliSense", InvokeKind::kGet, {}, "QvIntelliSense", true, false},
      {"CurHelpFile", InvokeKind::kGet, {}, "CurHelpFile", "/h/qv.chm", ""},
      {"GetMDIParentComAB", M, {}, "GetMDIParentComAB", thing, nothing},
      {"GetStartApp", M, {}, "GetApp", thing, nothing},
      {"GetQvDXImageList", M, {}, "GetQvDXImageList", thing, nothing},
      {"GetQvDXPicture", M, {"VM"}, "GetQvDXPicture", thing, nothing},
      {"GetActiveMDIChildForm", M, {}, "GetActiveMDIChildForm", thing, nothing},
  };
}

TEST_F(CQvGlobalsTest, MembersForwardToTheMainWindowByName) {
  auto globals = Create();
  const ObjectPtr thing = std::make_shared<CallbackObject>();
  for (ForwardRow& row : ForwardRows(thing)) {
    std::vector<Variant> args = row.args;
    EXPECT_EQ(globals->Invoke(row.member, row.kind, args), row.without_window)
        << row.member;
  }
  auto window = std::make_shared<CallbackObject>();
  ObjectPtr window_object = window;
  globals->set_frmMDIParentRef(window_object);
  for (ForwardRow& row : ForwardRows(thing)) {
    window->On(row.window_member,
               [answer = row.answer](InvokeKind, Args) { return answer; });
    window->ClearCalls();
    std::vector<Variant> args = row.args;
    const Variant result = globals->Invoke(row.member, row.kind, args);
    EXPECT_EQ(result, row.answer.IsEmpty() ? Variant() : row.answer)
        << row.member;
    const auto calls = window->CallsTo(row.window_member);
    ASSERT_EQ(calls.size(), 1u) << row.member;
    EXPECT_EQ(calls[0].args, row.args) << row.member;
    EXPECT_EQ(calls[0].kind, InvokeKind::kMethod) << row.member;
  }
}

TEST_F(CQvGlobalsTest, ModulSelectedPassesThreeArgumentsByReference) {
  auto globals = Create();
  std::vector<Variant> args = {"VM", "/p/Haus.qv3", "Haus", "K1"};
  EXPECT_EQ(globals->Call("ModulSelected", args), Variant(false));

  auto window = std::make_shared<CallbackObject>();
  window->On("ModulSelected", [](InvokeKind, Args a) {
    EXPECT_EQ(a[3], Variant("K1"));
    a[0] = "EZ";
    a[1] = a[1].ToString() + "/neu.qv3";
    a[2] = "Neu";
    a[3] = "ignored";
    return Variant(true);
  });
  globals->Set("frmMDIParentRef", window);
  EXPECT_EQ(globals->Invoke("ModulSelected", InvokeKind::kMethod, args),
            Variant(true));
  EXPECT_EQ(args,
            (std::vector<Variant>{"EZ", "/p/Haus.qv3/neu.qv3", "Neu", "K1"}));
}

TEST_F(CQvGlobalsTest, ErrorsOfTheMainWindowPassUnchanged) {
  auto globals = Create();
  auto window = std::make_shared<CallbackObject>();
  window->On("GetABToolEnabled", [](InvokeKind, Args) -> Variant {
    throw Error(-2147220504, "frmMain", "Werkzeug fehlt");
  });
  globals->Set("frmMDIParentRef", window);
  EXPECT_TRUE(RaisesError([&] { globals->GetABToolEnabled("tX"); }, kError1000,
                          "Werkzeug fehlt", "frmMain"));
}

TEST_F(CQvGlobalsTest, MainWindowFillsTheApplicationContext) {
  auto globals = Create();
  EXPECT_EQ(AppContext::Current()->MainWindowHandle(), 0);
  EXPECT_EQ(AppContext::Current()->CurHelpFile(), "");
  auto window = std::make_shared<CallbackObject>();
  window->Property("hWnd", int32_t{4711});
  window->Property("CurHelpFile", "/opt/qv/Heizlast.chm");
  globals->Set("frmMDIParentRef", window);
  EXPECT_EQ(AppContext::Current()->MainWindowHandle(), 4711);
  EXPECT_EQ(AppContext::Current()->CurHelpFile(), "/opt/qv/Heizlast.chm");
}

TEST_F(CQvGlobalsTest, LanguageConversionsIgnoreLetterCase) {
  auto globals = Create();
  struct Row {
    std::string text;
    bool ok;
    QvLanguage_t_ language;
  };
  const Row rows[] = {
      {"de", true, qvlGerman},    {"EN", true, qvlEnglish},
      {"De", true, qvlGerman},    {"fr", false, qvlNoLanguage},
      {"", false, qvlNoLanguage}, {" de", false, qvlNoLanguage}};
  for (const Row& row : rows) {
    EXPECT_EQ(globals->Call("IsLanguageStrOk", {row.text}), Variant(row.ok))
        << row.text;
    if (row.ok) {
      EXPECT_EQ(globals->StrToQvLanguage(row.text), row.language) << row.text;
    } else {
      EXPECT_TRUE(
          RaisesError([&] { globals->Call("StrToQvLanguage", {row.text}); },
                      kError1000, "Unbekanntes LanguageInfo", ""));
    }
  }
  EXPECT_EQ(globals->QvLanguageToStr(qvlGerman), "de");
  EXPECT_EQ(globals->Call("QvLanguageToStr", {int32_t{2}}), Variant("en"));
  for (int32_t bad : {0, 3, -1}) {
    EXPECT_EQ(globals->Call("IsQvLanguageOk", {bad}), Variant(false));
    EXPECT_TRUE(RaisesError([&] { globals->Call("QvLanguageToStr", {bad}); },
                            kError1000, "Unbekanntes QvLanguage_t_", ""));
  }
  EXPECT_TRUE(globals->IsQvLanguageOk(qvlEnglish));
}

TEST_F(CQvGlobalsTest, RetiredIntelliSenseLetRaises) {
  auto globals = Create();
  EXPECT_TRUE(RaisesError(
      [&] { globals->Let("QvIntelliSense", true); }, kError1000,
      "CQvGlobals: Die Methode Let QvIntelliSense wird nicht mehr unterstützt.",
      ""));
}

}  // namespace
}  // namespace qv
