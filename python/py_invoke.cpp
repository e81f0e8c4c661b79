#include "py_invoke.h"

#include <string>
#include <vector>

#include "py_convert.h"
#include "py_value_types.h"

namespace qvpy {
namespace {

// The accessor that a call of this kind reaches (a get and a method stand
// in for each other), or nullptr when the member is unknown.
const qv::Accessor* AccessorFor(const qv::MemberInfo* member,
                                qv::InvokeKind kind) {
  if (member == nullptr) return nullptr;
  if (const qv::Accessor& wanted = member->For(kind)) return &wanted;
  if (kind == qv::InvokeKind::kMethod && member->get) return &member->get;
  if (kind == qv::InvokeKind::kGet && member->method) return &member->method;
  return nullptr;
}

std::vector<qv::Variant> ConvertArgs(const py::tuple& args,
                                     const qv::Accessor* accessor) {
  std::vector<qv::Variant> values;
  values.reserve(args.size());
  for (size_t i = 0; i < args.size(); ++i) {
    std::string_view type;
    if (accessor != nullptr && i < accessor->param_types.size()) {
      type = accessor->param_types[i];
    }
    values.push_back(ToVariant(args[i], type));
  }
  return values;
}

void WriteBack(const py::tuple& args, const std::vector<qv::Variant>& values) {
  for (size_t i = 0; i < args.size(); ++i) {
    if (py::isinstance<ByRef>(args[i])) {
      args[i].cast<ByRef&>().value = ToPython(values[i]);
    }
  }
}

}  // namespace

py::object InvokeMember(const qv::ObjectPtr& object, std::string_view name,
                        qv::InvokeKind kind, const py::tuple& args) {
  const qv::MemberInfo* member = object->GetClassInfo().Find(name);
  std::vector<qv::Variant> values =
      ConvertArgs(args, AccessorFor(member, kind));
  qv::Variant result = object->Invoke(name, kind, values);
  WriteBack(args, values);
  return ToPython(result);
}

void AssignMember(const qv::ObjectPtr& object, std::string_view name,
                  const py::tuple& args) {
  const qv::MemberInfo* member = object->GetClassInfo().Find(name);
  const qv::Accessor* accessor = nullptr;
  if (member != nullptr) accessor = member->let ? &member->let : &member->set;
  std::vector<qv::Variant> values = ConvertArgs(args, accessor);
  const bool set =
      values.back().IsObject() && (member == nullptr || member->set);
  object->Invoke(name, set ? qv::InvokeKind::kSet : qv::InvokeKind::kLet,
                 values);
  WriteBack(args, values);
}

py::tuple IndexArgs(const py::object& key) {
  if (py::isinstance<py::tuple>(key))
    return py::reinterpret_borrow<py::tuple>(key);
  return py::make_tuple(key);
}

}  // namespace qvpy
