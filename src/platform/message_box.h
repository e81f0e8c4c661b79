// MessageBox shows a modal message to the user, titled "qv-software" unless
// told otherwise, and returns the user's answer. The host application
// installs the handler that really shows it; until then (and in tools and
// tests without a user interface) the text goes to standard error and the
// answer is OK. The installed handler is shared by the whole process.
// Threads: the handler is process-wide; installing and reading it take a lock,
// and the handler runs on the calling thread without it, so it may install or
// reset itself.
#ifndef QVGLOBAL_PLATFORM_MESSAGE_BOX_H_
#define QVGLOBAL_PLATFORM_MESSAGE_BOX_H_

#include <functional>
#include <string>
#include <string_view>

namespace qv::platform {

class MessageBox {
 public:
  // Button sets of the style argument; an icon may be added to them.
  static constexpr int kOkOnly = 0;
  static constexpr int kOkCancel = 1;
  static constexpr int kAbortRetryIgnore = 2;
  static constexpr int kYesNoCancel = 3;
  static constexpr int kYesNo = 4;
  static constexpr int kRetryCancel = 5;
  static constexpr int kCritical = 16;
  static constexpr int kQuestion = 32;
  static constexpr int kExclamation = 48;
  static constexpr int kInformation = 64;

  // Answers.
  static constexpr int kOk = 1;
  static constexpr int kCancel = 2;
  static constexpr int kAbort = 3;
  static constexpr int kRetry = 4;
  static constexpr int kIgnore = 5;
  static constexpr int kYes = 6;
  static constexpr int kNo = 7;

  using Handler = std::function<int(const std::string& text,
                                    const std::string& title, int style)>;

  // Shows `text` under `title` with the buttons and icon of `style` and
  // returns the answer.
  static int Show(std::string_view text, std::string_view title = "qv-software",
                  int style = kOkOnly);

  // Installs the host's handler; an empty handler restores the default.
  static void SetHandler(Handler handler);
  static void ResetHandler();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_MESSAGE_BOX_H_
