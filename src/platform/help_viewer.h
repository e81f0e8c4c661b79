// HelpViewer opens the suite's help at a context number (a topic of a help
// file) for a window of the host. The host application installs the handler
// that really shows help; without one, nothing happens. The installed
// handler is shared by the whole process.
// Threads: the handler is process-wide; installing and reading it take a lock,
// and the handler runs on the calling thread without it, so it may install or
// reset itself.
#ifndef QVGLOBAL_PLATFORM_HELP_VIEWER_H_
#define QVGLOBAL_PLATFORM_HELP_VIEWER_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qv::platform {

class HelpViewer {
 public:
  // `window` is the host's handle of the calling window (0 for none).
  using Handler = std::function<void(const std::string& file,
                                     int32_t context_id, int64_t window)>;

  // Shows the topic `context_id` of the help file `file`.
  static void Show(std::string_view file, int32_t context_id,
                   int64_t window = 0);

  // Installs the host's handler; an empty handler restores the default.
  static void SetHandler(Handler handler);
  static void ResetHandler();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_HELP_VIEWER_H_
