#include "py_host_object.h"

#include <pybind11/eval.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "com/error.h"
#include "com/text.h"
#include "py_convert.h"
#include "py_errors.h"
#include "py_value_types.h"

namespace qvpy {
namespace {

// Which positional parameters of a callee are annotated as by-reference.
constexpr const char* kByRefPositionsSource = R"(
import inspect

def byref_positions(fn, count, byref):
    func = getattr(fn, "__func__", fn)
    if not getattr(func, "__annotations__", None):
        return ()
    try:
        params = list(inspect.signature(fn).parameters.values())
    except (TypeError, ValueError):
        return ()

    def is_byref(a):
        return a is byref or (isinstance(a, str) and a.split(".")[-1] == "ByRef")

    positions = []
    for i, p in enumerate(params):
        if p.kind is p.VAR_POSITIONAL:
            if is_byref(p.annotation):
                positions.extend(range(i, count))
            break
        if p.kind not in (p.POSITIONAL_ONLY, p.POSITIONAL_OR_KEYWORD):
            break
        if i < count and is_byref(p.annotation):
            positions.append(i)
    return positions
)";

PyObject* byref_positions = nullptr;  // never released, as the module's types

// The host object of each Python object that has one, by object address.
// The address stays valid while the host object lives: it holds a reference.
using HostMap = std::unordered_map<PyObject*, std::weak_ptr<PyHostObject>>;
HostMap& Hosts() {
  static auto* hosts = new HostMap;  // host objects may outlive statics
  return *hosts;
}

py::object Dir(py::handle object) {
  return py::module_::import("builtins").attr("dir")(object);
}

// The name of the attribute that answers `name`: the name itself, else an
// attribute whose name matches without regard to letter case.
std::optional<std::string> ResolveName(py::handle object,
                                       std::string_view name) {
  std::optional<std::string> folded;
  for (py::handle attribute : Dir(object)) {
    std::string s = attribute.cast<std::string>();
    if (s == name) return s;
    if (!folded && qv::text::EqualsText(s, name)) folded = std::move(s);
  }
  if (folded) return folded;
  const std::string exact(name);
  if (py::hasattr(object, exact.c_str())) return exact;  // dynamic __getattr__
  return std::nullopt;
}

py::object GetAttribute(py::handle object, std::string_view name) {
  const std::string exact(name);
  PyObject* found = PyObject_GetAttrString(object.ptr(), exact.c_str());
  if (found != nullptr) return py::reinterpret_steal<py::object>(found);
  if (!PyErr_ExceptionMatches(PyExc_AttributeError))
    throw py::error_already_set();
  PyErr_Clear();
  std::optional<std::string> resolved = ResolveName(object, name);
  if (!resolved) throw qv::Error::Runtime(qv::err::kObjectDoesntSupport);
  return object.attr(resolved->c_str());
}

bool IsCallableMember(py::handle attribute) {
  return PyCallable_Check(attribute.ptr()) && !PyType_Check(attribute.ptr());
}

// Calls `fn` with the arguments and writes back what by-reference boxes
// and changed arrays hold afterwards. The parameters `event` marks by
// reference are boxed whatever the callee's annotations say.
py::object CallWithArgs(py::handle fn, qv::Args args,
                        const qv::EventInfo* event) {
  std::vector<bool> boxed(args.size(), false);
  for (size_t i = 0; event != nullptr && i < args.size(); ++i) {
    boxed[i] = event->IsByRef(i);
  }
  py::object byref_type = py::type::of<ByRef>();
  for (py::handle i : py::reinterpret_borrow<py::object>(byref_positions)(
           fn, args.size(), byref_type)) {
    boxed[i.cast<size_t>()] = true;
  }
  py::tuple values(args.size());
  for (size_t i = 0; i < args.size(); ++i) {
    py::object value = ToPython(args[i]);
    values[i] = boxed[i] ? py::cast(ByRef{std::move(value)}) : std::move(value);
  }
  py::object result = fn(*values);
  for (size_t i = 0; i < args.size(); ++i) {
    if (boxed[i] || py::isinstance<PySafeArray>(values[i])) {
      args[i] = ToVariant(values[i]);
    }
  }
  return result;
}

}  // namespace

void InitHostObjects() {
  py::dict scope;
  scope["__builtins__"] = py::module_::import("builtins");
  py::exec(kByRefPositionsSource, scope);
  py::object fn = scope["byref_positions"];
  byref_positions = fn.inc_ref().ptr();
}

PyHostObject::~PyHostObject() {
  if (!Py_IsInitialized()) {
    // The interpreter has gone and taken the object's memory with it.
    object_.release();
    return;
  }
  const PyGILState_STATE state = PyGILState_Ensure();
  auto it = Hosts().find(object_.ptr());
  if (it != Hosts().end() && it->second.expired()) Hosts().erase(it);
  object_ = py::object();
  PyGILState_Release(state);
}

qv::Variant PyHostObject::Invoke(std::string_view name, qv::InvokeKind kind,
                                 qv::Args args) {
  return InvokeGuarded(name, kind, args, nullptr);
}

qv::Variant PyHostObject::InvokeEvent(const qv::EventInfo& event,
                                      qv::Args args) {
  return InvokeGuarded(event.name, qv::InvokeKind::kMethod, args, &event);
}

qv::Variant PyHostObject::InvokeGuarded(std::string_view name,
                                        qv::InvokeKind kind, qv::Args args,
                                        const qv::EventInfo* event) {
  py::gil_scoped_acquire gil;
  try {
    return InvokeHeld(name, kind, args, event);
  } catch (py::error_already_set& e) {
    qv::Error error = ToQvError(e);
    // A 438 from the callee's own code is not a missing member of the
    // callee: event sources pass over sinks that answer a bare 438.
    if (error.number() == qv::err::kObjectDoesntSupport &&
        error.source().empty()) {
      throw qv::Error(error.number(), "Python", error.description());
    }
    throw error;
  } catch (const qv::Error&) {
    throw;
  } catch (const std::exception& e) {
    throw qv::Error(kPythonException, "Python", e.what());
  }
}

qv::Variant PyHostObject::InvokeHeld(std::string_view name, qv::InvokeKind kind,
                                     qv::Args args,
                                     const qv::EventInfo* event) {
  const bool assign =
      kind == qv::InvokeKind::kLet || kind == qv::InvokeKind::kSet;
  if (assign && args.size() == 1) {
    std::optional<std::string> resolved = ResolveName(object_, name);
    if (!resolved) throw qv::Error::Runtime(qv::err::kObjectDoesntSupport);
    py::setattr(object_, resolved->c_str(), ToPython(args[0]));
    return qv::Variant();
  }
  py::object attribute = GetAttribute(object_, name);
  if (IsCallableMember(attribute)) {
    py::object result = CallWithArgs(attribute, args, event);
    return assign ? qv::Variant() : ToVariant(result);
  }
  if (assign || !args.empty()) {
    throw qv::Error::Runtime(qv::err::kWrongNumberOfArguments);
  }
  return ToVariant(attribute);
}

qv::ObjectPtr HostObjectFor(py::handle value) {
  if (qv::ObjectPtr existing = FindHostObject(value)) return existing;
  std::shared_ptr<PyHostObject> host(
      new PyHostObject(py::reinterpret_borrow<py::object>(value)));
  Hosts()[value.ptr()] = host;
  return host;
}

qv::ObjectPtr FindHostObject(py::handle value) {
  auto it = Hosts().find(value.ptr());
  return it == Hosts().end() ? nullptr : it->second.lock();
}

py::object PythonObjectOf(const qv::ObjectPtr& object) {
  const auto* host = dynamic_cast<const PyHostObject*>(object.get());
  if (host == nullptr) return py::object();
  return py::reinterpret_borrow<py::object>(host->object());
}

}  // namespace qvpy
