#include "platform/help_viewer.h"

#include <utility>

#include "platform/service_slot.h"

namespace qv::platform {
namespace {

ServiceSlot<HelpViewer::Handler>& InstalledHandler() {
  static ServiceSlot<HelpViewer::Handler> slot;
  return slot;
}

}  // namespace

void HelpViewer::Show(std::string_view file, int32_t context_id,
                      int64_t window) {
  // Without a viewer there is no help to show.
  const Handler handler = InstalledHandler().Get(nullptr);
  if (handler) handler(std::string(file), context_id, window);
}

void HelpViewer::SetHandler(Handler handler) {
  InstalledHandler().Install(std::move(handler));
}

void HelpViewer::ResetHandler() { InstalledHandler().Reset(); }

}  // namespace qv::platform
