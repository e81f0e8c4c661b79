#include "platform/display.h"

#include <mutex>
#include <utility>

#include "platform/service_slot.h"

namespace qv::platform {
namespace {

// The screen reported when the host has installed none.
class DefaultDisplay : public Display {
 public:
  int32_t ScreenWidth() const override { return 1920; }
  int32_t ScreenHeight() const override { return 1080; }
  int32_t BitsPerPixel() const override { return 24; }
  int32_t Planes() const override { return 1; }
  ScreenPoint GetCursorPos() const override {
    std::lock_guard<std::mutex> lock(mutex_);
    return cursor_;
  }
  void SetCursorPos(ScreenPoint position) override {
    std::lock_guard<std::mutex> lock(mutex_);
    cursor_ = position;
  }

 private:
  mutable std::mutex mutex_;
  ScreenPoint cursor_;
};

ServiceSlot<std::shared_ptr<Display>>& InstalledDisplay() {
  static ServiceSlot<std::shared_ptr<Display>> slot;
  return slot;
}

}  // namespace

std::shared_ptr<Display> Display::Current() {
  static const std::shared_ptr<Display> fallback =
      std::make_shared<DefaultDisplay>();
  return InstalledDisplay().Get(fallback);
}

void Display::Install(std::shared_ptr<Display> display) {
  InstalledDisplay().Install(std::move(display));
}

void Display::Reset() { InstalledDisplay().Reset(); }

}  // namespace qv::platform
