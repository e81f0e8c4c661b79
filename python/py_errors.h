// Errors across the bridge. qvglobal.ComError is the Python face of
// qv::Error (number, source, description; the message is the description).
// Library errors reach Python as ComError (error 438 as its subclass
// MemberError, which is also an AttributeError); an exception raised by Python
// code that the library called (a host object, an event sink) reaches the
// library as a qv::Error: a ComError keeps its three parts, any other
// exception becomes error 440 with source "Python", and the original
// exception becomes the __cause__ of the ComError when that error comes back
// to Python. The module owns the ComError class; all of this runs with the
// GIL held.
#ifndef QVGLOBAL_PYTHON_PY_ERRORS_H_
#define QVGLOBAL_PYTHON_PY_ERRORS_H_

#include <pybind11/pybind11.h>

#include "com/error.h"

namespace qvpy {

namespace py = pybind11;

// The number given to a Python exception other than ComError.
inline constexpr int32_t kPythonException = 440;

// Defines qvglobal.ComError, qvglobal.MemberError and the translation of
// qv::Error into it.
void BindErrors(py::module_& m);

// The qv::Error for the Python exception held by `e` (consumes it).
qv::Error ToQvError(py::error_already_set& e);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_ERRORS_H_
