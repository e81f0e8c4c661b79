// AppContext is what the message code needs to know of the running
// application and cannot know from its own layer: the user-interface
// language, the current help file and the handle of the main window. The
// global object (shell layer) knows them; it installs its context for its
// thread when the first global object of the thread is created and removes
// it when the last one goes. Without an installed context the language is
// qvlNoLanguage, the help file "" and the window handle 0.
//
// Ownership: the slot holds a shared reference to the installed context.
// Threads: the slot is per thread, like the global object's state; a context
// is called only on the thread that installed it.
#ifndef QVGLOBAL_MESSAGES_APP_CONTEXT_H_
#define QVGLOBAL_MESSAGES_APP_CONTEXT_H_

#include <cstdint>
#include <memory>
#include <string>

#include "central/qv_language.h"

namespace qv {

class AppContext {
 public:
  virtual ~AppContext() = default;

  virtual QvLanguage_t_ Language() const = 0;
  // The help file of the running module; may raise what the main window
  // raises when asked for it.
  virtual std::string CurHelpFile() const = 0;
  // The window handle of the main window, 0 when there is none.
  virtual int32_t MainWindowHandle() const = 0;

  // This thread's context: the installed one, else the default above.
  static std::shared_ptr<AppContext> Current();
  // Installs `context` for this thread; null restores the default.
  static void Install(std::shared_ptr<AppContext> context);
};

}  // namespace qv

#endif  // QVGLOBAL_MESSAGES_APP_CONTEXT_H_
