// PyHostObject makes any Python object a qv::Object, so that a grid, a
// toolbar, a form, a main window or an event sink can be written in Python
// and handed to the library, which calls it by member name:
// - the attribute is looked up by its exact name, else without regard to
//   letter case; a missing one raises 438;
// - a method or get calls the attribute when it is callable (with the
//   arguments), else reads it; a let or set assigns it (or calls it when
//   the library passes index arguments);
// - an argument reaches the Python callee as a qvglobal.ByRef box when the
//   callee's parameter is annotated `qvglobal.ByRef` (or "ByRef"), or when
//   the host object is called as a sink of an event that marks the
//   parameter by reference (no annotation needed); what the callee leaves
//   in the box's value goes back into the caller's slot, and so does a
//   qvglobal.SafeArray argument that the callee changed in place;
// - a Python exception becomes a qv::Error (see py_errors.h); a 438 raised
//   by the callee's own code gets the source "Python", so that it never
//   reads as a member the callee lacks.
// Every Python object has at most one host object at a time, so the same
// Python object always stands for the same qv::Object (advise and unadvise,
// dictionary keys). The host object holds a strong reference to the Python
// object and takes the GIL in Invoke and in its destructor; it is owned by
// whoever holds its shared_ptr (the library, a variant, an event source).
#ifndef QVGLOBAL_PYTHON_PY_HOST_OBJECT_H_
#define QVGLOBAL_PYTHON_PY_HOST_OBJECT_H_

#include <pybind11/pybind11.h>

#include <string_view>

#include "com/object.h"

namespace qvpy {

namespace py = pybind11;

class PyHostObject : public qv::Object {
 public:
  ~PyHostObject() override;
  PyHostObject(const PyHostObject&) = delete;
  PyHostObject& operator=(const PyHostObject&) = delete;

  qv::Variant Invoke(std::string_view name, qv::InvokeKind kind,
                     qv::Args args) override;
  qv::Variant InvokeEvent(const qv::EventInfo& event, qv::Args args) override;

  py::handle object() const { return object_; }

 private:
  friend qv::ObjectPtr HostObjectFor(py::handle value);
  explicit PyHostObject(py::object object) : object_(std::move(object)) {}

  // Takes the GIL and turns Python errors into qv::Error; `event` is the
  // event whose sink this call is, or nullptr.
  qv::Variant InvokeGuarded(std::string_view name, qv::InvokeKind kind,
                            qv::Args args, const qv::EventInfo* event);
  qv::Variant InvokeHeld(std::string_view name, qv::InvokeKind kind,
                         qv::Args args, const qv::EventInfo* event);

  py::object object_;
};

// Prepares the by-reference detection; once, when the module is imported.
void InitHostObjects();

// The host object of a Python object, created on first use. GIL held.
qv::ObjectPtr HostObjectFor(py::handle value);
// The existing host object of a Python object, or nullptr. GIL held.
qv::ObjectPtr FindHostObject(py::handle value);
// The Python object behind a host object; a null handle for other objects.
py::object PythonObjectOf(const qv::ObjectPtr& object);

}  // namespace qvpy

#endif  // QVGLOBAL_PYTHON_PY_HOST_OBJECT_H_
