// qvglobal.Dispatch is the Python face of a library object: it holds the
// object's shared_ptr (a client reference, released when the wrapper goes)
// and reaches every member by name, without regard to letter case:
//   obj.Name          a property without parameters: its get; a property
//                     with parameters or a method: a qvglobal.Member to call
//   obj.Name = v      let, or set when v is an object (None included) and
//                     the member has a set
//   obj.Name(a, b)    the method (or the get with arguments)
//   obj.Item[k] = v   a property let with arguments (Member.__setitem__)
//   dir(obj)          the members (obj.__dir__() keeps interface order)
// Objects with Count/Item or Keys (collections, dictionaries) also support
// len(), iteration, indexing and `in`; advise/unadvise connect a Python event
// sink. Two wrappers of one object compare equal. Calls run with the GIL
// held, so the library, which takes no locks, sees one caller at a time.
#ifndef QVGLOBAL_PYTHON_PY_DISPATCH_H_
#define QVGLOBAL_PYTHON_PY_DISPATCH_H_

#include <pybind11/pybind11.h>

#include "com/object.h"

namespace qvpy {

namespace py = pybind11;

// Defines Dispatch, Member and CreateObject.
void BindDispatch(py::module_& m);

// A Dispatch wrapper of a library object.
py::object WrapObject(qv::ObjectPtr object);
// The object of a Dispatch wrapper; nullptr for any other Python value.
qv::ObjectPtr UnwrapObject(py::handle value);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_DISPATCH_H_
