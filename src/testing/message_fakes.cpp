#include "testing/message_fakes.h"

#include <fstream>

#include "messages/app_context.h"
#include "platform/help_viewer.h"
#include "platform/message_box.h"

namespace qv::testing {
namespace {

class StateContext : public AppContext {
 public:
  explicit StateContext(std::shared_ptr<FakeAppContext::State> state)
      : state_(std::move(state)) {}
  QvLanguage_t_ Language() const override { return state_->language; }
  std::string CurHelpFile() const override { return state_->help_file; }
  int32_t MainWindowHandle() const override { return state_->main_window; }

 private:
  std::shared_ptr<FakeAppContext::State> state_;
};

}  // namespace

MessageBoxRecorder::MessageBoxRecorder() {
  platform::MessageBox::SetHandler(
      [this](const std::string& text, const std::string& title, int style) {
        shown.push_back({text, title, style});
        return platform::MessageBox::kOk;
      });
}

MessageBoxRecorder::~MessageBoxRecorder() {
  platform::MessageBox::ResetHandler();
}

std::vector<std::string> MessageBoxRecorder::Texts() const {
  std::vector<std::string> texts;
  for (const Box& box : shown) texts.push_back(box.text);
  return texts;
}

HelpRecorder::HelpRecorder() {
  platform::HelpViewer::SetHandler(
      [this](const std::string& file, int32_t context_id, int64_t window) {
        requests.push_back({file, context_id, window});
      });
}

HelpRecorder::~HelpRecorder() { platform::HelpViewer::ResetHandler(); }

FakeAppContext::FakeAppContext() : state_(std::make_shared<State>()) {
  AppContext::Install(std::make_shared<StateContext>(state_));
}

FakeAppContext::~FakeAppContext() { AppContext::Install(nullptr); }

HelpFileScene::HelpFileScene(int32_t window) : file(dir.File("qv.chm")) {
  std::ofstream(file) << "help";
  app.state().help_file = file;
  app.state().main_window = window;
}

}  // namespace qv::testing
