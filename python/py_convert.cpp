#include "py_convert.h"

// The datetime C API keeps its entry table in a static of this file.
#include <datetime.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/variant_date.h"
#include "py_dispatch.h"
#include "py_host_object.h"
#include "py_value_types.h"

namespace qvpy {
namespace {

constexpr int64_t kMillisecondsPerDay = 86400000;
// About the range of Python's datetime (years 1 to 9999) in days.
constexpr double kMaxDays = 3.0e6;

std::string_view BaseType(std::string_view type) {
  if (!type.empty() && type.back() == '&') type.remove_suffix(1);
  return type;
}

qv::Variant IntToVariant(py::handle value, std::string_view type) {
  int overflow = 0;
  const long long n = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
  if (type == "Integer") {
    if (overflow != 0 || n < std::numeric_limits<int16_t>::min() ||
        n > std::numeric_limits<int16_t>::max()) {
      throw qv::Error::Runtime(qv::err::kOverflow);
    }
    return static_cast<int16_t>(n);
  }
  if (overflow == 0 && n >= std::numeric_limits<int32_t>::min() &&
      n <= std::numeric_limits<int32_t>::max()) {
    return static_cast<int32_t>(n);
  }
  if (type == "Double" || type == "Single") {
    const double d = PyLong_AsDouble(value.ptr());
    if (d == -1.0 && PyErr_Occurred()) throw py::error_already_set();
    return d;
  }
  throw qv::Error::Runtime(qv::err::kOverflow);
}

std::string StringFromPython(py::handle value) {
  // Strict: a string with an unpaired surrogate has no UTF-8 form, and the
  // library must never store bytes that are not UTF-8.
  py::object bytes = py::reinterpret_steal<py::object>(
      PyUnicode_AsEncodedString(value.ptr(), "utf-8", "strict"));
  if (!bytes) {
    PyErr_Clear();
    throw qv::Error(qv::err::kInvalidProcedureCall, "qvglobal",
                    "Invalid procedure call or argument: the string holds an "
                    "unpaired surrogate and has no UTF-8 form");
  }
  return std::string(PyBytes_AS_STRING(bytes.ptr()),
                     static_cast<size_t>(PyBytes_GET_SIZE(bytes.ptr())));
}

py::object StringToPython(const std::string& s) {
  PyObject* text = PyUnicode_DecodeUTF8(
      s.data(), static_cast<Py_ssize_t>(s.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(text);
}

qv::Date DateFromPython(py::handle value) {
  PyObject* v = value.ptr();
  double seconds = 0;
  if (PyDateTime_Check(v)) {
    seconds = PyDateTime_DATE_GET_HOUR(v) * 3600.0 +
              PyDateTime_DATE_GET_MINUTE(v) * 60.0 +
              PyDateTime_DATE_GET_SECOND(v) +
              PyDateTime_DATE_GET_MICROSECOND(v) / 1e6;
  }
  double days = qv::MakeDate(PyDateTime_GET_YEAR(v), PyDateTime_GET_MONTH(v),
                             PyDateTime_GET_DAY(v))
                    .serial;
  // Dates keep milliseconds. The last millisecond before midnight rounds
  // into the next day, except on 9999-12-31, where the sum would become
  // 10000-01-01 in a double.
  int64_t ms = std::llround(seconds * 1000.0);
  if (ms >= kMillisecondsPerDay) {
    if (days >= qv::kLastDaySerial) {
      ms = kMillisecondsPerDay - 1;
    } else {
      days += 1;
      ms = 0;
    }
  }
  const double time = static_cast<double>(ms) / kMillisecondsPerDay;
  // Before 1899-12-30 the time counts away from the day, as in every
  // automation date.
  return qv::Date{days < 0 ? days - time : days + time};
}

// Dates come back to the millisecond; a double holds no more than that
// for the dates of this century.
py::object DateToPython(qv::Date date) {
  if (!std::isfinite(date.serial) || std::fabs(date.serial) > kMaxDays) {
    throw qv::Error::Runtime(qv::err::kOverflow);
  }
  double whole = 0;
  const int64_t ms = qv::RoundTimeOfDay(date, kMillisecondsPerDay, whole);
  auto epoch = py::reinterpret_steal<py::object>(
      PyDateTime_FromDateAndTime(1899, 12, 30, 0, 0, 0, 0));
  auto delta = py::reinterpret_steal<py::object>(
      PyDelta_FromDSU(static_cast<int>(whole), static_cast<int>(ms / 1000),
                      static_cast<int>(ms % 1000 * 1000)));
  if (!epoch || !delta) throw py::error_already_set();
  return epoch + delta;
}

qv::Variant ArrayToVariant(py::handle items, int32_t lbound) {
  std::vector<qv::Variant> values;
  values.reserve(py::len(items));
  for (py::handle item : items) values.push_back(ToVariant(item));
  return qv::SafeArray(std::move(values), lbound);
}

py::object ArrayToPython(const qv::SafeArray& array) {
  PySafeArray a;
  a.lbound = array.LBound();
  a.items.reserve(array.size());
  for (const qv::Variant& item : array) a.items.push_back(ToPython(item));
  return py::cast(std::move(a));
}

py::object ObjectToPython(const qv::ObjectPtr& object) {
  if (!object) return py::none();
  if (py::object own = PythonObjectOf(object)) return own;
  return WrapObject(object);
}

}  // namespace

void InitConvert() {
  PyDateTime_IMPORT;
  if (PyDateTimeAPI == nullptr) throw py::error_already_set();
}

qv::Variant ToVariant(py::handle value, std::string_view type) {
  PyObject* v = value.ptr();
  if (value.is_none()) return qv::Variant(nullptr);
  if (value.is(EmptyValue())) return qv::Variant();
  if (value.is(NullValue())) return qv::kNull;
  if (PyBool_Check(v)) return v == Py_True;
  if (PyLong_Check(v)) return IntToVariant(value, BaseType(type));
  if (PyFloat_Check(v)) return PyFloat_AS_DOUBLE(v);
  if (PyIndex_Check(v)) {  // integer types of other libraries
    auto index = py::reinterpret_steal<py::object>(PyNumber_Index(v));
    if (!index) throw py::error_already_set();
    return IntToVariant(index, BaseType(type));
  }
  if (PyUnicode_Check(v)) return StringFromPython(value);
  if (PyDate_Check(v)) return DateFromPython(value);  // datetime is a date
  if (py::isinstance<ByRef>(value)) {
    return ToVariant(value.cast<const ByRef&>().value, type);
  }
  if (py::isinstance<PySafeArray>(value)) {
    const auto& a = value.cast<const PySafeArray&>();
    return ArrayToVariant(ItemsOf(a), a.lbound);
  }
  if (PyList_Check(v) || PyTuple_Check(v)) return ArrayToVariant(value, 0);
  if (qv::ObjectPtr object = UnwrapObject(value)) return object;
  return HostObjectFor(value);
}

py::object ToPython(const qv::Variant& value) {
  switch (value.type()) {
    case qv::VarType::kEmpty:
      return py::reinterpret_borrow<py::object>(EmptyValue());
    case qv::VarType::kNull:
      return py::reinterpret_borrow<py::object>(NullValue());
    case qv::VarType::kBoolean:
      return py::bool_(value.ToBoolean());
    case qv::VarType::kInteger:
    case qv::VarType::kLong:
      return py::int_(value.ToLong());
    case qv::VarType::kSingle:
    case qv::VarType::kDouble:
      return py::float_(value.ToDouble());
    case qv::VarType::kDate:
      return DateToPython(value.ToDate());
    case qv::VarType::kString:
      return StringToPython(*value.AsString());
    case qv::VarType::kObject:
      return ObjectToPython(value.ToObject());
    case qv::VarType::kArray:
      return ArrayToPython(value.ToArray());
  }
  throw qv::Error::Runtime(qv::err::kTypeMismatch);
}

}  // namespace qvpy
