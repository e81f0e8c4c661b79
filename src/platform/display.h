// Display answers the library's questions about the user's screen: its size
// in pixels, its colour depth and the position of the mouse cursor, which
// the library may also move. The host application installs its own Display
// for the whole process; without one, a screen of 1920 x 1080 pixels at 24
// bits per pixel and one plane is reported, and the cursor position is only
// remembered (it starts at 0, 0).
// Threads: the installed display is process-wide; installing and reading it
// take a lock, and the default display guards its cursor position with its own
// mutex, so any thread may call it. A host's own Display must be safe to call
// from the threads that use the library.
#ifndef QVGLOBAL_PLATFORM_DISPLAY_H_
#define QVGLOBAL_PLATFORM_DISPLAY_H_

#include <cstdint>
#include <memory>

namespace qv::platform {

// A position on the screen in pixels, from its top left corner.
struct ScreenPoint {
  int32_t x = 0;
  int32_t y = 0;
  bool operator==(const ScreenPoint&) const = default;
};

class Display {
 public:
  virtual ~Display() = default;

  virtual int32_t ScreenWidth() const = 0;   // pixels
  virtual int32_t ScreenHeight() const = 0;  // pixels
  virtual int32_t BitsPerPixel() const = 0;
  virtual int32_t Planes() const = 0;
  virtual ScreenPoint GetCursorPos() const = 0;
  virtual void SetCursorPos(ScreenPoint position) = 0;

  // The display in use: the installed one, else the default.
  static std::shared_ptr<Display> Current();
  // Installs `display` for the whole process; null restores the default.
  static void Install(std::shared_ptr<Display> display);
  static void Reset();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_DISPLAY_H_
