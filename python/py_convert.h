// Conversions between qv::Variant and Python values, the same in both
// directions for every member of every class:
//   None <-> Nothing, qvglobal.Empty / qvglobal.Null <-> Empty / Null,
//   bool <-> Boolean, int <-> Long (Integer for a 16-bit parameter),
//   float <-> Double (Single arrives as float), str <-> String,
//   datetime.datetime <-> Date (datetime.date is taken as midnight),
//   list / tuple / qvglobal.SafeArray -> array, array -> qvglobal.SafeArray,
//   a library object <-> qvglobal.Dispatch, any other Python object -> a
//   host object (see py_host_object.h), which comes back as itself.
// Callers hold the GIL.
#ifndef QVGLOBAL_PYTHON_PY_CONVERT_H_
#define QVGLOBAL_PYTHON_PY_CONVERT_H_

#include <pybind11/pybind11.h>

#include <string_view>

#include "com/variant.h"

namespace qvpy {

namespace py = pybind11;

// Prepares the datetime conversions; once, when the module is imported.
void InitConvert();

// `type` is the declared type of the parameter that receives the value
// ("Integer", "Long&", "Variant", ...; empty when unknown). It decides how
// an int converts: to Integer for "Integer", else to Long; an int that does
// not fit raises 6 (Overflow), except that a Single or Double parameter
// takes a large int as a Double. A qvglobal.ByRef converts as its value.
qv::Variant ToVariant(py::handle value, std::string_view type = {});

py::object ToPython(const qv::Variant& value);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_CONVERT_H_
