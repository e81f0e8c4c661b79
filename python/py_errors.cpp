#include "py_errors.h"

#include <pybind11/eval.h>

#include <exception>
#include <string>

namespace qvpy {
namespace {

constexpr const char* kComErrorSource = R"(
class ComError(Exception):
    """An automation error: number, source and description."""

    def __init__(self, number, source="", description=""):
        super().__init__(description)
        self.number = number
        self.source = source
        self.description = description


class MemberError(ComError, AttributeError):
    """Error 438: the object has no such property or method."""
)";

// The two classes. They are never released: the translator may still run
// while the interpreter shuts down.
PyObject* com_error_type = nullptr;
PyObject* member_error_type = nullptr;

// The last Python exception that became error 440, kept until that error
// comes back to Python so that it can be named as the ComError's cause.
struct PendingCause {
  py::object exception;
  std::string description;
};
PendingCause& Pending() {
  static auto* pending = new PendingCause;  // outlives the interpreter
  return *pending;
}

void RaiseComError(const qv::Error& e) {
  // 438 is also an AttributeError, so that hasattr() and getattr() with a
  // default work on library objects.
  PyObject* type_ptr = e.number() == qv::err::kObjectDoesntSupport
                           ? member_error_type
                           : com_error_type;
  py::object type = py::reinterpret_borrow<py::object>(type_ptr);
  py::object error = type(e.number(), e.source(), e.description());
  PendingCause& pending = Pending();
  if (pending.exception && e.number() == kPythonException &&
      e.source() == "Python" && e.description() == pending.description) {
    // PyException_SetCause steals the reference.
    PyException_SetCause(error.ptr(), pending.exception.release().ptr());
  }
  pending.exception = py::object();
  PyErr_SetObject(type_ptr, error.ptr());
}

}  // namespace

void BindErrors(py::module_& m) {
  py::dict scope;
  scope["__builtins__"] = py::module_::import("builtins");
  scope["__name__"] = m.attr("__name__");
  py::exec(kComErrorSource, scope);
  py::object type = scope["ComError"];
  py::object member_type = scope["MemberError"];
  com_error_type = type.inc_ref().ptr();
  member_error_type = member_type.inc_ref().ptr();
  m.attr("ComError") = type;
  m.attr("MemberError") = member_type;

  py::register_exception_translator([](std::exception_ptr p) {
    try {
      if (p) std::rethrow_exception(p);
    } catch (const qv::Error& e) {
      RaiseComError(e);
    }
  });
}

qv::Error ToQvError(py::error_already_set& e) {
  const py::object& value = e.value();
  if (e.matches(com_error_type)) {
    try {
      return qv::Error(value.attr("number").cast<int32_t>(),
                       py::str(value.attr("source")),
                       py::str(value.attr("description")));
    } catch (const py::error_already_set&) {
      // Not a usable number: treated as any other exception below.
    } catch (const py::cast_error&) {
    }
  }
  std::string description =
      py::str(value.get_type().attr("__name__")).cast<std::string>() + ": " +
      py::str(value).cast<std::string>();
  PendingCause& pending = Pending();
  pending.exception = value;
  pending.description = description;
  return qv::Error(kPythonException, "Python", std::move(description));
}

}  // namespace qvpy
