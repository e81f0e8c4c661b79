#include "shell/internal/global_state.h"

#include <tuple>
#include <utility>

#include "central/qv_path.h"
#include "data/cqv_db_container.h"
#include "messages/app_context.h"
#include "records/cqv_clipboard.h"
#include "shell/cqv_com_events.h"

namespace qv {
namespace {

// The application context that the message code reads while global
// objects live on the thread.
class GlobalsContext : public AppContext {
 public:
  explicit GlobalsContext(const GlobalState& state) : state_(state) {}

  QvLanguage_t_ Language() const override { return state_.language; }
  std::string CurHelpFile() const override {
    return state_.CallMainWindow("CurHelpFile", {}).ToString();
  }
  int32_t MainWindowHandle() const override {
    if (!state_.main_window) return 0;
    return state_.main_window->Get("hWnd").ToLong();
  }

 private:
  const GlobalState& state_;
};

}  // namespace

GlobalState& GlobalState::OfThisThread() {
  thread_local GlobalState state;
  return state;
}

void GlobalState::Acquire() {
  if (count == 0) {
    container = std::make_shared<CQvDbContainer>();
    clipboard = std::make_shared<CQvClipboard>();
    path = std::make_shared<central::QvPath>();
    events = std::make_shared<CQvComEvents_t_>();
    tool_tip_level = 1;
    SetCurrentClipboard(clipboard);
    AppContext::Install(std::make_shared<GlobalsContext>(*this));
  }
  ++count;
}

void GlobalState::Release() {
  if (--count > 0) return;
  count = 0;
  AppContext::Install(nullptr);
  if (CurrentClipboard() == clipboard) SetCurrentClipboard(nullptr);
  // Moved out first: releasing the container may run code that asks for
  // the state again.
  auto released = std::make_tuple(std::move(container), std::move(clipboard),
                                  std::move(main_window), std::move(path),
                                  std::move(events));
}

Variant GlobalState::CallMainWindow(std::string_view member, Args args) const {
  if (!main_window) return Variant();
  return main_window->Invoke(member, InvokeKind::kMethod, args);
}

}  // namespace qv
