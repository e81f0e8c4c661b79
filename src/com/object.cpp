#include "com/object.h"

#include "com/error.h"

namespace qv {
namespace {

// A get and a method are interchangeable for a caller that does not know
// which of the two a member is (scripting hosts ask for both at once).
const Accessor* Resolve(const MemberInfo& member, InvokeKind kind) {
  auto either = [](const Accessor& first, const Accessor& second) {
    return first ? &first : second ? &second : nullptr;
  };
  switch (kind) {
    case InvokeKind::kMethod:
      return either(member.method, member.get);
    case InvokeKind::kGet:
      return either(member.get, member.method);
    case InvokeKind::kLet:
      return member.let ? &member.let : nullptr;
    case InvokeKind::kSet:
      return member.set ? &member.set : nullptr;
  }
  return nullptr;
}

}  // namespace

const ClassInfo& Object::GetClassInfo() const {
  static const ClassInfo empty("Object");
  return empty;
}

Variant Object::Invoke(std::string_view name, InvokeKind kind, Args args) {
  const MemberInfo* member = GetClassInfo().Find(name);
  if (member == nullptr) throw Error::Runtime(err::kObjectDoesntSupport);
  return InvokeMember(*member, kind, args);
}

Variant Object::InvokeById(int32_t id, InvokeKind kind, Args args) {
  const MemberInfo* member = GetClassInfo().FindById(id);
  if (member == nullptr) throw Error::Runtime(err::kObjectDoesntSupport);
  return InvokeMember(*member, kind, args);
}

Variant Object::InvokeEvent(const EventInfo& event, Args args) {
  return Invoke(event.name, InvokeKind::kMethod, args);
}

Variant Object::InvokeMember(const MemberInfo& member, InvokeKind kind,
                             Args args) {
  const Accessor* accessor = Resolve(member, kind);
  if (accessor == nullptr) throw Error::Runtime(err::kObjectDoesntSupport);
  const auto given = static_cast<int>(args.size());
  if (given < accessor->required ||
      given > static_cast<int>(accessor->param_types.size())) {
    throw Error::Runtime(err::kWrongNumberOfArguments);
  }
  return accessor->call(*this, args);
}

Variant Object::Call(std::string_view name, std::vector<Variant> args) {
  return Invoke(name, InvokeKind::kMethod, args);
}

Variant Object::Get(std::string_view name, std::vector<Variant> args) {
  return Invoke(name, InvokeKind::kGet, args);
}

void Object::Let(std::string_view name, Variant value) {
  Variant args[] = {std::move(value)};
  Invoke(name, InvokeKind::kLet, args);
}

void Object::Set(std::string_view name, ObjectPtr value) {
  Variant args[] = {Variant(std::move(value))};
  Invoke(name, InvokeKind::kSet, args);
}

}  // namespace qv
