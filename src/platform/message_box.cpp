#include "platform/message_box.h"

#include <iostream>
#include <utility>

#include "platform/service_slot.h"

namespace qv::platform {
namespace {

int WriteToStandardError(const std::string& text, const std::string& title,
                         int /*style*/) {
  std::cerr << title << ": " << text << std::endl;
  return MessageBox::kOk;
}

ServiceSlot<MessageBox::Handler>& InstalledHandler() {
  static ServiceSlot<MessageBox::Handler> slot;
  return slot;
}

}  // namespace

int MessageBox::Show(std::string_view text, std::string_view title, int style) {
  const Handler handler = InstalledHandler().Get(WriteToStandardError);
  return handler(std::string(text), std::string(title), style);
}

void MessageBox::SetHandler(Handler handler) {
  InstalledHandler().Install(std::move(handler));
}

void MessageBox::ResetHandler() { InstalledHandler().Reset(); }

}  // namespace qv::platform
