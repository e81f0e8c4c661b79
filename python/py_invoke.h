// Calls from Python into a library object by member name. The arguments
// are converted with the parameter types of the member (so that an int
// becomes an Integer for a 16-bit parameter), a qvglobal.ByRef argument
// passes its value and receives what the member wrote back, and the result
// is converted back to Python. Errors leave as qv::Error (ComError in
// Python). The GIL is held throughout.
#ifndef QVGLOBAL_PYTHON_PY_INVOKE_H_
#define QVGLOBAL_PYTHON_PY_INVOKE_H_

#include <pybind11/pybind11.h>

#include <string_view>

#include "com/object.h"

namespace qvpy {

namespace py = pybind11;

// Invokes a method or a get with the arguments.
py::object InvokeMember(const qv::ObjectPtr& object, std::string_view name,
                        qv::InvokeKind kind, const py::tuple& args);

// Assigns the last of `args` to the property, the others being its
// arguments: a set when the value is an object (or None) and the member has
// a set, else a let.
void AssignMember(const qv::ObjectPtr& object, std::string_view name,
                  const py::tuple& args);

// The arguments of an index expression: a tuple stands for several.
py::tuple IndexArgs(const py::object& key);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_INVOKE_H_
