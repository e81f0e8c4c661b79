// GlobalState is what all CQvGlobals objects of one thread share: the count
// of live objects, the main window, the database container, the record
// clipboard, the path service, the event companion, the tool-tip level, the
// editor's names and the language. The first object of a thread creates the
// shared parts (Acquire), the last one releases them (Release); names and
// language outlive a release.
//
// While the shared parts exist, the state fills the thread's slots of the
// lower layers: the record clipboard that record sets reach through
// CurrentClipboard(), and the application context of the message code
// (language, help file, main window handle).
//
// Ownership: the state is a thread_local of this library and owns the
// shared parts; objects that callers got from it keep theirs alive.
// Threads: one state per thread, used only by that thread.
#ifndef QVGLOBAL_SHELL_INTERNAL_GLOBAL_STATE_H_
#define QVGLOBAL_SHELL_INTERNAL_GLOBAL_STATE_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "central/qv_language.h"
#include "com/class_info.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv {

class CQvClipboard;
class CQvComEvents_t_;
class CQvDbContainer;
namespace central {
class QvPath;
}

struct GlobalState {
  int32_t count = 0;
  ObjectPtr main_window;
  std::shared_ptr<CQvDbContainer> container;
  std::shared_ptr<CQvClipboard> clipboard;
  std::shared_ptr<central::QvPath> path;
  std::shared_ptr<CQvComEvents_t_> events;
  int16_t tool_tip_level = 0;
  std::string kurz_bez_bearbeiter;
  std::string lang_bez_bearbeiter;
  QvLanguage_t_ language = qvlNoLanguage;

  // This thread's state.
  static GlobalState& OfThisThread();

  // Counts one more live object; the first creates the shared parts.
  void Acquire();
  // Counts one object less; the last releases the shared parts.
  void Release();

  // Calls the main window's member `member` as a method with `args` (which
  // it may write into) and returns its result; Empty without a main
  // window. Errors of the main window pass unchanged.
  Variant CallMainWindow(std::string_view member, Args args) const;
};

}  // namespace qv

#endif  // QVGLOBAL_SHELL_INTERNAL_GLOBAL_STATE_H_
