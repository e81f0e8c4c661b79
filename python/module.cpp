// The `qvglobal` Python module: every class of the library, created by
// ProgID and called by member name (see py_dispatch.h), with the values,
// errors and host objects of the bridge (py_convert.h, py_errors.h,
// py_host_object.h).
#include <pybind11/pybind11.h>

#include "py_convert.h"
#include "py_dispatch.h"
#include "py_errors.h"
#include "py_host_object.h"
#include "py_services.h"
#include "py_value_types.h"

PYBIND11_MODULE(qvglobal, m) {
  m.doc() =
      "The qvglobal library for Python: CreateObject(progid) gives an object "
      "whose members are reached by name.";
  qvpy::InitConvert();
  qvpy::InitHostObjects();
  qvpy::BindErrors(m);
  qvpy::BindValueTypes(m);
  qvpy::BindDispatch(m);
  qvpy::BindServices(m);
}
