#include "py_services.h"

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "com/error.h"
#include "com/safe_array.h"
#include "platform/display.h"
#include "platform/help_viewer.h"
#include "platform/keyboard.h"
#include "platform/message_box.h"
#include "py_errors.h"
#include "py_host_object.h"

namespace qvpy {
namespace {

using qv::platform::Display;
using qv::platform::HelpViewer;
using qv::platform::Keyboard;
using qv::platform::MessageBox;
using qv::platform::ScreenPoint;

// A Python callable held by a C++ handler: it takes the GIL to call and to
// let go of the callable, and lets go of nothing once the interpreter has
// gone.
class PyCallable {
 public:
  explicit PyCallable(py::object fn) : fn_(std::move(fn)) {}
  ~PyCallable() {
    if (!Py_IsInitialized()) {
      fn_.release();
      return;
    }
    py::gil_scoped_acquire gil;
    fn_ = py::object();
  }
  PyCallable(const PyCallable&) = delete;
  PyCallable& operator=(const PyCallable&) = delete;

  // Calls the function with the GIL taken; Python errors become qv::Error.
  template <class R, class... A>
  R Call(A&&... args) const {
    py::gil_scoped_acquire gil;
    try {
      py::object result = fn_(std::forward<A>(args)...);
      if constexpr (!std::is_void_v<R>) return result.cast<R>();
    } catch (py::error_already_set& e) {
      throw ToQvError(e);
    } catch (const py::cast_error&) {
      throw qv::Error::Runtime(qv::err::kTypeMismatch);
    }
  }

 private:
  py::object fn_;
};

// A display written in Python, called by member name.
class PyDisplay : public Display {
 public:
  explicit PyDisplay(qv::ObjectPtr host) : host_(std::move(host)) {}
  int32_t ScreenWidth() const override { return Long("ScreenWidth"); }
  int32_t ScreenHeight() const override { return Long("ScreenHeight"); }
  int32_t BitsPerPixel() const override { return Long("BitsPerPixel"); }
  int32_t Planes() const override { return Long("Planes"); }
  ScreenPoint GetCursorPos() const override {
    const qv::Variant pos = host_->Call("GetCursorPos");
    const qv::SafeArray& xy = pos.ToArray();
    if (xy.size() != 2) throw qv::Error::Runtime(qv::err::kTypeMismatch);
    return {xy[xy.LBound()].ToLong(), xy[xy.LBound() + 1].ToLong()};
  }
  void SetCursorPos(ScreenPoint position) override {
    host_->Call("SetCursorPos", {position.x, position.y});
  }

 private:
  int32_t Long(std::string_view member) const {
    return host_->Get(member).ToLong();
  }
  qv::ObjectPtr host_;
};

// A keyboard written in Python, called by member name.
class PyKeyboard : public Keyboard {
 public:
  explicit PyKeyboard(qv::ObjectPtr host) : host_(std::move(host)) {}
  bool IsShiftDown() const override { return Down("IsShiftDown"); }
  bool IsCtrlDown() const override { return Down("IsCtrlDown"); }
  bool IsAltDown() const override { return Down("IsAltDown"); }

 private:
  bool Down(std::string_view member) const {
    return host_->Get(member).ToBoolean();
  }
  qv::ObjectPtr host_;
};

void SetMessageBoxHandler(const py::object& fn) {
  if (fn.is_none()) return MessageBox::ResetHandler();
  auto held = std::make_shared<PyCallable>(fn);
  MessageBox::SetHandler(
      [held](const std::string& text, const std::string& title, int style) {
        return held->Call<int>(text, title, style);
      });
}

void SetHelpHandler(const py::object& fn) {
  if (fn.is_none()) return HelpViewer::ResetHandler();
  auto held = std::make_shared<PyCallable>(fn);
  HelpViewer::SetHandler(
      [held](const std::string& file, int32_t context_id, int64_t window) {
        held->Call<void>(file, context_id, window);
      });
}

void SetDisplay(const py::object& obj) {
  if (obj.is_none()) return Display::Reset();
  Display::Install(std::make_shared<PyDisplay>(HostObjectFor(obj)));
}

void SetKeyboard(const py::object& obj) {
  if (obj.is_none()) return Keyboard::Reset();
  Keyboard::Install(std::make_shared<PyKeyboard>(HostObjectFor(obj)));
}

void RestoreDefaults() {
  MessageBox::ResetHandler();
  HelpViewer::ResetHandler();
  Display::Reset();
  Keyboard::Reset();
}

}  // namespace

void BindServices(py::module_& m) {
  m.def("SetMessageBoxHandler", &SetMessageBoxHandler, py::arg("fn"),
        "Shows the library's message boxes through fn(text, title, style), "
        "which returns the answer; None restores the default.");
  m.def("SetHelpHandler", &SetHelpHandler, py::arg("fn"),
        "Shows help through fn(file, context_id, window); None restores the "
        "default (no help).");
  m.def("SetDisplay", &SetDisplay, py::arg("obj"),
        "Answers screen questions through obj (ScreenWidth, ScreenHeight, "
        "BitsPerPixel, Planes, GetCursorPos, SetCursorPos); None restores "
        "the default.");
  m.def("SetKeyboard", &SetKeyboard, py::arg("obj"),
        "Answers which modifier keys are down through obj (IsShiftDown, "
        "IsCtrlDown, IsAltDown); None restores the default.");
  py::module_::import("atexit").attr("register")(
      py::cpp_function(&RestoreDefaults));
}

}  // namespace qvpy
