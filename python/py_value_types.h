// The Python value types of the bridge:
// - qvglobal.SafeArray: an automation array as a Python sequence (indexed
//   from 0 like any sequence) that keeps the array's lower bound (`lbound`,
//   `ubound`). Arrays from the library arrive as SafeArray; a SafeArray
//   passed to the library keeps its bounds, a list or tuple gets bound 0.
// - qvglobal.ByRef: a box for a by-reference argument; after the call its
//   `value` holds what the member wrote back. len, iteration and indexing
//   of the box reach its value.
// - qvglobal.Empty and qvglobal.Null: the two special variants (None is
//   Nothing, the missing object).
// Python owns all of these; a SafeArray holds its elements as Python values.
#ifndef QVGLOBAL_PYTHON_PY_VALUE_TYPES_H_
#define QVGLOBAL_PYTHON_PY_VALUE_TYPES_H_

#include <pybind11/pybind11.h>

#include <cstdint>
#include <vector>

namespace qvpy {

namespace py = pybind11;

struct PySafeArray {
  std::vector<py::object> items;
  int32_t lbound = 0;
};

struct ByRef {
  py::object value;
};

// The elements as a new Python list.
py::list ItemsOf(const PySafeArray& array);

// Defines SafeArray, ByRef, Empty and Null in the module.
void BindValueTypes(py::module_& m);

// The two special values defined by BindValueTypes.
py::handle EmptyValue();
py::handle NullValue();

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_VALUE_TYPES_H_
