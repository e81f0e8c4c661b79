#include "testing/callback_object.h"

#include <algorithm>
#include <utility>

#include "com/error.h"
#include "com/text.h"

namespace qv::testing {
namespace {

std::string Fold(std::string_view name) { return text::ToLowerAscii(name); }

bool SameName(std::string_view a, std::string_view b) {
  return Fold(a) == Fold(b);
}

}  // namespace

CallbackObject& CallbackObject::On(std::string_view name, Handler handler) {
  handlers_[Fold(name)] = std::move(handler);
  return *this;
}

CallbackObject& CallbackObject::Property(std::string_view name,
                                         Variant initial) {
  auto value = std::make_shared<Variant>(std::move(initial));
  properties_[Fold(name)] = value;
  return On(name, [value](InvokeKind kind, Args args) -> Variant {
    const bool put = kind == InvokeKind::kLet || kind == InvokeKind::kSet;
    if (args.size() != (put ? 1u : 0u)) {
      throw Error::Runtime(err::kWrongNumberOfArguments);
    }
    if (put) *value = args[0];
    return put ? Variant() : *value;
  });
}

Variant CallbackObject::PropertyValue(std::string_view name) const {
  auto it = properties_.find(Fold(name));
  return it == properties_.end() ? Variant() : *it->second;
}

Variant CallbackObject::Invoke(std::string_view name, InvokeKind kind,
                               Args args) {
  calls_.push_back({std::string(name), kind, {args.begin(), args.end()}});
  auto it = handlers_.find(Fold(name));
  if (it == handlers_.end()) throw Error::Runtime(err::kObjectDoesntSupport);
  return it->second(kind, args);
}

std::vector<CallbackObject::Invocation> CallbackObject::CallsTo(
    std::string_view name) const {
  std::vector<Invocation> matching;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(matching),
               [&](const Invocation& c) { return SameName(c.name, name); });
  return matching;
}

size_t CallbackObject::CallCount(std::string_view name) const {
  return static_cast<size_t>(std::count_if(
      calls_.begin(), calls_.end(),
      [&](const Invocation& c) { return SameName(c.name, name); }));
}

}  // namespace qv::testing
