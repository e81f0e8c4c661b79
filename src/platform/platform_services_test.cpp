// Tests of the small host-replaceable services: message box, help viewer,
// display, keyboard and the common application-data folder.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/common_app_data.h"
#include "platform/display.h"
#include "platform/help_viewer.h"
#include "platform/keyboard.h"
#include "platform/message_box.h"
#include "testing/scoped_env.h"

namespace qv::platform {
namespace {

TEST(MessageBoxTest,
     DefaultWritesToStandardErrorUntilAHandlerAnswersOrResetsItself) {
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MessageBox::Show("Datei fehlt", "qv-software", MessageBox::kYesNo),
            MessageBox::kOk);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "qv-software: Datei fehlt\n");

  std::string seen;
  MessageBox::SetHandler(
      [&](const std::string& text, const std::string& title, int style) {
        seen = title + "|" + text + "|" + std::to_string(style);
        return MessageBox::kNo;
      });
  EXPECT_EQ(MessageBox::Show("Speichern?", "qv-software",
                             MessageBox::kYesNo + MessageBox::kQuestion),
            MessageBox::kNo);
  EXPECT_EQ(seen, "qv-software|Speichern?|36");

  MessageBox::ResetHandler();
  seen.clear();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MessageBox::Show("Hallo"), MessageBox::kOk);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "qv-software: Hallo\n");
  EXPECT_EQ(seen, "");
  int calls = 0;
  MessageBox::SetHandler([&](const std::string&, const std::string&, int) {
    ++calls;
    MessageBox::ResetHandler();
    return MessageBox::kCancel;
  });
  EXPECT_EQ(MessageBox::Show("a"), MessageBox::kCancel);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(MessageBox::Show("b"), MessageBox::kOk);
  ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(calls, 1);
}

TEST(HelpViewerTest, InstalledHandlerReceivesTopicUntilReset) {
  HelpViewer::Show("qv.chm", 60012, 77);  // no viewer: nothing happens
  std::string seen;
  int calls = 0;
  HelpViewer::SetHandler([&](const std::string& file, int32_t context_id,
                             int64_t window) {
    ++calls;
    seen =
        file + "|" + std::to_string(context_id) + "|" + std::to_string(window);
  });
  HelpViewer::Show("qv.chm", 60012, 77);
  EXPECT_EQ(seen, "qv.chm|60012|77");
  HelpViewer::Show("qv.chm", 60001);
  EXPECT_EQ(seen, "qv.chm|60001|0");
  HelpViewer::ResetHandler();
  HelpViewer::Show("qv.chm", 60002);
  EXPECT_EQ(calls, 2);
}

// A host's display: a small screen whose cursor is always in the middle.
class SmallScreen : public Display {
 public:
  int32_t ScreenWidth() const override { return 800; }
  int32_t ScreenHeight() const override { return 600; }
  int32_t BitsPerPixel() const override { return 16; }
  int32_t Planes() const override { return 2; }
  ScreenPoint GetCursorPos() const override { return {400, 300}; }
  void SetCursorPos(ScreenPoint) override {}
};

TEST(DisplayTest, DefaultScreenUntilAHostInstallsItsOwn) {
  const auto display = Display::Current();
  EXPECT_EQ(display->ScreenWidth(), 1920);
  EXPECT_EQ(display->ScreenHeight(), 1080);
  EXPECT_EQ(display->BitsPerPixel(), 24);
  EXPECT_EQ(display->Planes(), 1);
  display->SetCursorPos({300, -20});
  EXPECT_EQ(Display::Current()->GetCursorPos(), (ScreenPoint{300, -20}));
  display->SetCursorPos({0, 0});

  Display::Install(std::make_shared<SmallScreen>());
  EXPECT_EQ(Display::Current()->ScreenWidth(), 800);
  Display::Current()->SetCursorPos({1, 1});
  EXPECT_EQ(Display::Current()->GetCursorPos(), (ScreenPoint{400, 300}));
  Display::Reset();
  EXPECT_EQ(Display::Current()->ScreenWidth(), 1920);
}

// A host's keyboard whose keys the test presses.
class PressedKeys : public Keyboard {
 public:
  PressedKeys(bool shift, bool ctrl, bool alt)
      : shift_(shift), ctrl_(ctrl), alt_(alt) {}
  bool IsShiftDown() const override { return shift_; }
  bool IsCtrlDown() const override { return ctrl_; }
  bool IsAltDown() const override { return alt_; }

 private:
  bool shift_, ctrl_, alt_;
};

TEST(KeyboardTest, ShiftStateIsOneValueByPrecedenceUntilReset) {
  EXPECT_EQ(Keyboard::Current()->ShiftState(), 0);  // default: no key down
  struct Row {
    bool shift, ctrl, alt;
    int16_t state;
  };
  const Row rows[] = {{false, false, false, 0}, {true, false, false, 1},
                      {false, true, false, 2},  {false, false, true, 4},
                      {true, true, true, 1},    {false, true, true, 2},
                      {true, false, true, 1}};
  for (const Row& row : rows) {
    Keyboard::Install(
        std::make_shared<PressedKeys>(row.shift, row.ctrl, row.alt));
    EXPECT_EQ(Keyboard::Current()->ShiftState(), row.state)
        << row.shift << row.ctrl << row.alt;
  }
  Keyboard::Reset();
  EXPECT_FALSE(Keyboard::Current()->IsShiftDown());
  EXPECT_EQ(Keyboard::Current()->ShiftState(), 0);
}

TEST(CommonAppDataTest, EnvironmentVariableOrVarLib) {
  ::qv::testing::ScopedEnv env("QV_COMMON_APPDATA", "/srv/qv data");
  EXPECT_EQ(CommonAppDataFolder(), "/srv/qv data");
  env.Set("QV_COMMON_APPDATA", "");
  EXPECT_EQ(CommonAppDataFolder(), "/var/lib");
  env.Set("QV_COMMON_APPDATA", std::nullopt);
  EXPECT_EQ(CommonAppDataFolder(), "/var/lib");
}

}  // namespace
}  // namespace qv::platform
