// The host services from Python: a scripting host or a test replaces the
// platform services of the library with Python code.
//   qvglobal.SetMessageBoxHandler(fn)  fn(text, title, style) -> int answer
//   qvglobal.SetHelpHandler(fn)        fn(file, context_id, window)
//   qvglobal.SetDisplay(obj)           obj.ScreenWidth, ScreenHeight,
//                                      BitsPerPixel, Planes,
//                                      GetCursorPos() -> (x, y),
//                                      SetCursorPos(x, y)
//   qvglobal.SetKeyboard(obj)          obj.IsShiftDown, IsCtrlDown, IsAltDown
// Members of the objects are reached by name like any host object (a
// property or a method without arguments will do). None restores the
// default service. The services are process-wide; the library calls them
// with the GIL taken, and an exception raised by the Python code reaches
// the library's caller as its error. At interpreter exit the defaults come
// back, so that no Python object outlives the interpreter.
#ifndef QVGLOBAL_PYTHON_PY_SERVICES_H_
#define QVGLOBAL_PYTHON_PY_SERVICES_H_

#include <pybind11/pybind11.h>

namespace qvpy {

namespace py = pybind11;

// Defines the four Set... functions of the module.
void BindServices(py::module_& m);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_SERVICES_H_
