#include "py_value_types.h"

#include <string>

namespace qvpy {
namespace {

struct SpecialValue {
  std::string name;
};

PyObject* empty_value = nullptr;  // never released, as the module's types
PyObject* null_value = nullptr;

size_t Position(const PySafeArray& a, py::ssize_t index) {
  const auto n = static_cast<py::ssize_t>(a.items.size());
  if (index < 0) index += n;
  if (index < 0 || index >= n)
    throw py::index_error("SafeArray index out of range");
  return static_cast<size_t>(index);
}

bool SameItems(const std::vector<py::object>& items, py::sequence other) {
  if (items.size() != py::len(other)) return false;
  for (size_t i = 0; i < items.size(); ++i) {
    if (!items[i].equal(other[i])) return false;
  }
  return true;
}

py::object Equals(const PySafeArray& self, py::handle other) {
  if (py::isinstance<PySafeArray>(other)) {
    const auto& o = other.cast<const PySafeArray&>();
    return py::bool_(self.lbound == o.lbound &&
                     SameItems(self.items, ItemsOf(o)));
  }
  // A list or tuple stands for an array with lower bound 0.
  if (py::isinstance<py::list>(other) || py::isinstance<py::tuple>(other)) {
    return py::bool_(
        self.lbound == 0 &&
        SameItems(self.items, py::reinterpret_borrow<py::sequence>(other)));
  }
  return py::reinterpret_borrow<py::object>(Py_NotImplemented);
}

}  // namespace

py::list ItemsOf(const PySafeArray& array) {
  py::list list(array.items.size());
  for (size_t i = 0; i < array.items.size(); ++i) list[i] = array.items[i];
  return list;
}

namespace {

void BindSafeArray(py::module_& m) {
  py::class_<PySafeArray> cls(m, "SafeArray");
  cls.def(py::init([](py::iterable items, int32_t lbound) {
            PySafeArray a;
            for (py::handle item : items) {
              a.items.push_back(py::reinterpret_borrow<py::object>(item));
            }
            a.lbound = lbound;
            return a;
          }),
          py::arg("items") = py::tuple(), py::arg("lbound") = 0)
      .def_readonly("lbound", &PySafeArray::lbound)
      .def_property_readonly("ubound",
                             [](const PySafeArray& a) {
                               return a.lbound +
                                      static_cast<int64_t>(a.items.size()) - 1;
                             })
      .def("__len__", [](const PySafeArray& a) { return a.items.size(); })
      .def("__getitem__", [](const PySafeArray& a,
                             py::ssize_t i) { return a.items[Position(a, i)]; })
      .def("__getitem__",
           [](const PySafeArray& a, const py::slice& s) -> py::object {
             return ItemsOf(a)[s];
           })
      .def("__setitem__",
           [](PySafeArray& a, py::ssize_t i, py::object v) {
             a.items[Position(a, i)] = std::move(v);
           })
      .def(
          "__iter__",
          [](const PySafeArray& a) {
            return py::make_iterator(a.items.begin(), a.items.end());
          },
          py::keep_alive<0, 1>())
      .def("__eq__", &Equals, py::is_operator())
      .def("__repr__", [](const PySafeArray& a) {
        return "SafeArray(" + py::repr(ItemsOf(a)).cast<std::string>() +
               ", lbound=" + std::to_string(a.lbound) + ")";
      });
  py::module_::import("collections.abc").attr("Sequence").attr("register")(cls);
}

void BindByRef(py::module_& m) {
  py::class_<ByRef>(m, "ByRef")
      .def(py::init([](py::object value) { return ByRef{std::move(value)}; }),
           py::arg("value") = py::reinterpret_borrow<py::object>(empty_value))
      .def_readwrite("value", &ByRef::value)
      // Element access reaches the boxed value, so a sink that only changes
      // elements of a by-reference array reads like one given the array.
      .def("__len__", [](const ByRef& b) { return py::len(b.value); })
      .def("__iter__", [](const ByRef& b) { return py::iter(b.value); })
      .def("__getitem__",
           [](const ByRef& b, py::object i) { return b.value[std::move(i)]; })
      .def("__setitem__",
           [](ByRef& b, py::object i, py::object v) {
             b.value[std::move(i)] = std::move(v);
           })
      .def("__repr__", [](const ByRef& b) {
        return "ByRef(" + py::repr(b.value).cast<std::string>() + ")";
      });
}

void BindSpecialValues(py::module_& m) {
  py::class_<SpecialValue>(m, "_SpecialValue")
      .def("__repr__",
           [](const SpecialValue& s) { return "qvglobal." + s.name; })
      .def("__bool__", [](const SpecialValue&) { return false; });
  py::object empty = py::cast(SpecialValue{"Empty"});
  py::object null = py::cast(SpecialValue{"Null"});
  empty_value = empty.inc_ref().ptr();
  null_value = null.inc_ref().ptr();
  m.attr("Empty") = empty;
  m.attr("Null") = null;
}

}  // namespace

void BindValueTypes(py::module_& m) {
  BindSpecialValues(m);
  BindSafeArray(m);
  BindByRef(m);
}

py::handle EmptyValue() { return empty_value; }
py::handle NullValue() { return null_value; }

}  // namespace qvpy
