// Keyboard tells the library which of the modifier keys Shift, Ctrl and Alt
// are held down at this moment, so that key events forwarded to a toolbar
// carry the right shift state. The host application installs its own
// Keyboard for the whole process; without one no key is reported down.
//
// Threads: Current, Install and Reset may be called from any thread; an
// installed keyboard is called on the thread that asks.
#ifndef QVGLOBAL_PLATFORM_KEYBOARD_H_
#define QVGLOBAL_PLATFORM_KEYBOARD_H_

#include <cstdint>
#include <memory>

namespace qv::platform {

class Keyboard {
 public:
  // The single shift-state values of a key event.
  static constexpr int16_t kShiftMask = 1;
  static constexpr int16_t kCtrlMask = 2;
  static constexpr int16_t kAltMask = 4;

  virtual ~Keyboard() = default;

  virtual bool IsShiftDown() const = 0;
  virtual bool IsCtrlDown() const = 0;
  virtual bool IsAltDown() const = 0;

  // One value, never a combination: kShiftMask when Shift is down, else
  // kCtrlMask when Ctrl is down, else kAltMask when Alt is down, else 0.
  int16_t ShiftState() const;

  // The keyboard in use: the installed one, else the default.
  static std::shared_ptr<Keyboard> Current();
  // Installs `keyboard` for the whole process; null restores the default.
  static void Install(std::shared_ptr<Keyboard> keyboard);
  static void Reset();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_KEYBOARD_H_
