// Test fakes for the message code: they capture what would be shown to the
// user and stand in for the running application.
//
//   qv::testing::MessageBoxRecorder boxes;     // captures every box
//   qv::testing::HelpRecorder help;            // captures help requests
//   qv::testing::FakeAppContext app;           // language, help file, window
//   app.state().language = qv::qvlEnglish;
//   ... code under test ...
//   ASSERT_EQ(boxes.shown.size(), 1u);
//   EXPECT_EQ(boxes.shown[0].text, "...");
//
// Each fake installs itself for the lifetime of the object and restores the
// default when it goes. The recorders answer every box with OK.
#ifndef QVGLOBAL_TESTING_MESSAGE_FAKES_H_
#define QVGLOBAL_TESTING_MESSAGE_FAKES_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "central/qv_language.h"
#include "testing/temp_dir.h"

namespace qv::testing {

class MessageBoxRecorder {
 public:
  struct Box {
    std::string text;
    std::string title;
    int style;
  };

  MessageBoxRecorder();
  ~MessageBoxRecorder();
  MessageBoxRecorder(const MessageBoxRecorder&) = delete;
  MessageBoxRecorder& operator=(const MessageBoxRecorder&) = delete;

  // The texts of the boxes shown, in order.
  std::vector<std::string> Texts() const;

  std::vector<Box> shown;
};

class HelpRecorder {
 public:
  struct Request {
    std::string file;
    int32_t context_id;
    int64_t window;
    bool operator==(const Request&) const = default;
  };

  HelpRecorder();
  ~HelpRecorder();
  HelpRecorder(const HelpRecorder&) = delete;
  HelpRecorder& operator=(const HelpRecorder&) = delete;

  std::vector<Request> requests;
};

// The application as the message code sees it; the fields may be changed
// while the fake is installed.
class FakeAppContext {
 public:
  FakeAppContext();
  ~FakeAppContext();
  FakeAppContext(const FakeAppContext&) = delete;
  FakeAppContext& operator=(const FakeAppContext&) = delete;

  struct State {
    QvLanguage_t_ language = qvlNoLanguage;
    std::string help_file;
    int32_t main_window = 0;
  };
  State& state() { return *state_; }

 private:
  std::shared_ptr<State> state_;
};

// An application whose help file `file` exists and whose main window has the
// handle `window`, with boxes and help requests captured.
struct HelpFileScene {
  explicit HelpFileScene(int32_t window);

  TempDir dir;
  std::string file;
  FakeAppContext app;
  MessageBoxRecorder boxes;
  HelpRecorder help;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_MESSAGE_FAKES_H_
