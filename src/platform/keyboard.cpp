#include "platform/keyboard.h"

#include <utility>

#include "platform/service_slot.h"

namespace qv::platform {
namespace {

// The keyboard reported when the host has installed none.
class NoKeyDown : public Keyboard {
 public:
  bool IsShiftDown() const override { return false; }
  bool IsCtrlDown() const override { return false; }
  bool IsAltDown() const override { return false; }
};

ServiceSlot<std::shared_ptr<Keyboard>>& InstalledKeyboard() {
  static ServiceSlot<std::shared_ptr<Keyboard>> slot;
  return slot;
}

}  // namespace

int16_t Keyboard::ShiftState() const {
  if (IsShiftDown()) return kShiftMask;
  if (IsCtrlDown()) return kCtrlMask;
  if (IsAltDown()) return kAltMask;
  return 0;
}

std::shared_ptr<Keyboard> Keyboard::Current() {
  static const std::shared_ptr<Keyboard> fallback =
      std::make_shared<NoKeyDown>();
  return InstalledKeyboard().Get(fallback);
}

void Keyboard::Install(std::shared_ptr<Keyboard> keyboard) {
  InstalledKeyboard().Install(std::move(keyboard));
}

void Keyboard::Reset() { InstalledKeyboard().Reset(); }

}  // namespace qv::platform
