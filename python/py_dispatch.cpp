#include "py_dispatch.h"

#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/error.h"
#include "py_convert.h"
#include "py_host_object.h"
#include "py_invoke.h"

namespace qvpy {
namespace {

struct Dispatch {
  qv::ObjectPtr object;
};

// A member that is called rather than read: a method, or a property with
// parameters (called for its get, indexed for its let).
struct Member {
  qv::ObjectPtr object;
  std::string name;
  qv::InvokeKind kind;
};

const qv::ClassInfo& Info(const Dispatch& d) {
  return d.object->GetClassInfo();
}

bool Has(const Dispatch& d, std::string_view name) {
  return Info(d).Find(name) != nullptr;
}

py::object GetAttr(const Dispatch& self, const std::string& name) {
  if (name.starts_with("__")) throw py::attribute_error(name);
  const qv::MemberInfo* member = Info(self).Find(name);
  if (member == nullptr) {
    // An object that answers Invoke itself lists no members: its members
    // can only be called.
    if (!Info(self).members().empty()) {
      throw qv::Error::Runtime(qv::err::kObjectDoesntSupport);
    }
    return py::cast(Member{self.object, name, qv::InvokeKind::kMethod});
  }
  if (member->get && member->get.param_types.empty()) {
    return InvokeMember(self.object, member->name, qv::InvokeKind::kGet,
                        py::tuple());
  }
  if (member->get) {
    return py::cast(Member{self.object, member->name, qv::InvokeKind::kGet});
  }
  if (member->method) {
    return py::cast(Member{self.object, member->name, qv::InvokeKind::kMethod});
  }
  // A write-only property: the object refuses the read.
  return InvokeMember(self.object, member->name, qv::InvokeKind::kGet,
                      py::tuple());
}

py::list MemberNames(const Dispatch& self) {
  py::list names;
  for (const qv::MemberInfo& m : Info(self).members()) names.append(m.name);
  return names;
}

py::ssize_t Len(const Dispatch& self) {
  if (!Has(self, "Count")) {
    throw py::type_error("object of class " + Info(self).name() +
                         " has no len()");
  }
  return InvokeMember(self.object, "Count", qv::InvokeKind::kGet, py::tuple())
      .cast<py::ssize_t>();
}

// Dictionaries iterate over their keys, collections over their items.
py::iterator Iter(const Dispatch& self) {
  if (Has(self, "Keys")) {
    return py::iter(InvokeMember(self.object, "Keys", qv::InvokeKind::kMethod,
                                 py::tuple()));
  }
  if (Has(self, "Count") && Has(self, "Item")) {
    py::list items;
    const py::ssize_t count = Len(self);
    for (py::ssize_t i = 1; i <= count; ++i) {
      items.append(InvokeMember(self.object, "Item", qv::InvokeKind::kGet,
                                py::make_tuple(i)));
    }
    return py::iter(items);
  }
  throw py::type_error("object of class " + Info(self).name() +
                       " is not iterable");
}

bool Contains(const Dispatch& self, const py::object& key) {
  if (Has(self, "Exists")) {
    return InvokeMember(self.object, "Exists", qv::InvokeKind::kMethod,
                        py::make_tuple(key))
        .cast<bool>();
  }
  for (py::handle item : Iter(self)) {
    if (item.equal(key)) return true;
  }
  return false;
}

void RequireItem(const Dispatch& self) {
  if (!Has(self, "Item")) {
    throw py::type_error("object of class " + Info(self).name() +
                         " is not subscriptable");
  }
}

qv::EventSource& Events(const Dispatch& self) {
  qv::EventSource* events = self.object->events();
  if (events == nullptr)
    throw qv::Error::Runtime(qv::err::kObjectDoesntSupport);
  return *events;
}

int32_t Advise(const Dispatch& self, const py::object& sink) {
  qv::EventSource& events = Events(self);
  return events.Advise(HostObjectFor(sink));
}

// By the sink object or by the cookie that advise returned.
void Unadvise(const Dispatch& self, const py::object& sink) {
  qv::EventSource& events = Events(self);
  bool removed = false;
  if (PyLong_CheckExact(sink.ptr())) {
    removed = events.Unadvise(sink.cast<int32_t>());
  } else if (qv::ObjectPtr host = FindHostObject(sink)) {
    removed = events.Unadvise(host);
  }
  if (!removed) throw qv::Error::Runtime(qv::err::kInvalidProcedureCall);
}

void BindDispatchClass(py::module_& m) {
  py::class_<Dispatch>(m, "Dispatch")
      .def("__getattr__", &GetAttr)
      .def("__setattr__",
           [](const Dispatch& self, const std::string& name, py::object value) {
             AssignMember(self.object, name, py::make_tuple(value));
           })
      .def("__dir__", &MemberNames)
      .def(
          "__eq__",
          [](const Dispatch& self, py::handle other) -> py::object {
            if (!py::isinstance<Dispatch>(other)) {
              return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            }
            return py::bool_(self.object ==
                             other.cast<const Dispatch&>().object);
          },
          py::is_operator())
      .def("__hash__",
           [](const Dispatch& self) {
             return std::hash<qv::Object*>()(self.object.get());
           })
      .def("__bool__", [](const Dispatch&) { return true; })
      .def("__len__", &Len)
      .def("__iter__", &Iter)
      .def("__contains__", &Contains)
      .def("__getitem__",
           [](const Dispatch& self, py::object key) {
             RequireItem(self);
             return InvokeMember(self.object, "Item", qv::InvokeKind::kGet,
                                 IndexArgs(key));
           })
      .def("__setitem__",
           [](const Dispatch& self, py::object key, py::object value) {
             RequireItem(self);
             AssignMember(self.object, "Item",
                          IndexArgs(key) + py::make_tuple(value));
           })
      .def("__repr__",
           [](const Dispatch& self) {
             return "<qvglobal.Dispatch " + Info(self).name() + ">";
           })
      .def("advise", &Advise, py::arg("sink"))
      .def("unadvise", &Unadvise, py::arg("sink"));
}

// Members take positional arguments only, as late-bound calls by name do.
void RefuseKeywords(const Member& self, const py::kwargs& kwargs) {
  if (kwargs.empty()) return;
  const std::string first = py::str(kwargs.begin()->first);
  throw qv::Error(qv::err::kInvalidProcedureCall,
                  self.object->GetClassInfo().name() + "." + self.name,
                  "Invalid procedure call or argument: keyword argument '" +
                      first + "' (members take positional arguments only)");
}

void BindMemberClass(py::module_& m) {
  py::class_<Member>(m, "Member")
      .def("__call__",
           [](const Member& self, py::args args, py::kwargs kwargs) {
             RefuseKeywords(self, kwargs);
             return InvokeMember(self.object, self.name, self.kind, args);
           })
      .def("__getitem__",
           [](const Member& self, py::object key) {
             return InvokeMember(self.object, self.name, qv::InvokeKind::kGet,
                                 IndexArgs(key));
           })
      .def("__setitem__",
           [](const Member& self, py::object key, py::object value) {
             AssignMember(self.object, self.name,
                          IndexArgs(key) + py::make_tuple(value));
           })
      .def("__repr__", [](const Member& self) {
        return "<qvglobal.Member " + self.object->GetClassInfo().name() + "." +
               self.name + ">";
      });
}

}  // namespace

void BindDispatch(py::module_& m) {
  BindDispatchClass(m);
  BindMemberClass(m);
  m.def(
      "CreateObject",
      [](py::handle progid) {
        if (!PyUnicode_Check(progid.ptr())) {
          throw qv::Error(qv::err::kTypeMismatch, "qvglobal.CreateObject",
                          "Type mismatch: the ProgID must be a string");
        }
        return ToPython(qv::CreateObject(progid.cast<std::string>()));
      },
      py::arg("progid"), "Creates a library object by ProgID.");
  m.def(
      "RegisteredClasses",
      [] {
        py::list progids;
        for (const qv::ClassRegistration& r : qv::RegisteredClasses()) {
          progids.append(r.progid);
        }
        return progids;
      },
      "The ProgIDs of all creatable classes, sorted.");
}

py::object WrapObject(qv::ObjectPtr object) {
  return py::cast(Dispatch{std::move(object)});
}

qv::ObjectPtr UnwrapObject(py::handle value) {
  if (!py::isinstance<Dispatch>(value)) return nullptr;
  return value.cast<const Dispatch&>().object;
}

}  // namespace qvpy
