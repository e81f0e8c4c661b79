// ClassBuilder states a class's dispatch interface once, next to its typed
// C++ members: each entry names a member and points at the C++ function (or
// field) behind it, and the templates below convert the variant arguments
// to the parameter types, fill in defaults of optional parameters, write
// back arguments taken by non-const reference, and convert the result.
//
//   ClassInfo CQVActiveBar::BuildClassInfo() {
//     return ClassBuilder<CQVActiveBar>("CQVActiveBar")
//         .Get("MNU_CUT_TOOLNAME", &CQVActiveBar::MNU_CUT_TOOLNAME)
//         .Method("ABKeyCodeToSendKeyStr",
//         &CQVActiveBar::ABKeyCodeToSendKeyStr) .Build();
//   }
// Threads: a ClassBuilder is a local of the one BuildClassInfo call that uses
// it; the ClassInfo it builds is read-only afterwards.
#ifndef QVGLOBAL_COM_DISPATCH_H_
#define QVGLOBAL_COM_DISPATCH_H_

#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "com/class_info.h"
#include "com/error.h"
#include "com/event_source.h"
#include "com/object.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "com/variant.h"

namespace qv {
namespace dispatch {

template <class T>
struct IsSharedPtr : std::false_type {};
template <class T>
struct IsSharedPtr<std::shared_ptr<T>> : std::true_type {};

// Converts an argument to the parameter type D.
template <class D>
D FromVariant(const Variant& v) {
  if constexpr (std::is_same_v<D, Variant>) {
    return v;
  } else if constexpr (std::is_same_v<D, bool>) {
    return v.ToBoolean();
  } else if constexpr (std::is_same_v<D, int16_t>) {
    return v.ToInteger();
  } else if constexpr (std::is_same_v<D, int32_t>) {
    return v.ToLong();
  } else if constexpr (std::is_same_v<D, float>) {
    return v.ToSingle();
  } else if constexpr (std::is_same_v<D, double>) {
    return v.ToDouble();
  } else if constexpr (std::is_same_v<D, Date>) {
    return v.ToDate();
  } else if constexpr (std::is_same_v<D, std::string>) {
    return v.ToString();
  } else if constexpr (std::is_same_v<D, SafeArray>) {
    return v.ToArray();
  } else if constexpr (std::is_enum_v<D>) {
    return static_cast<D>(v.ToLong());
  } else if constexpr (IsSharedPtr<D>::value) {
    ObjectPtr o = v.ToObject();
    if (!o) return nullptr;
    auto typed = std::dynamic_pointer_cast<typename D::element_type>(o);
    if (!typed) throw Error::Runtime(err::kTypeMismatch);
    return typed;
  } else {
    static_assert(sizeof(D) == 0, "unsupported parameter type");
  }
}

// Converts a result (or a written-back argument) to a variant.
template <class R>
Variant ToVariant(R&& r) {
  using D = std::remove_cvref_t<R>;
  if constexpr (std::is_enum_v<D>) {
    return Variant(static_cast<int32_t>(r));
  } else if constexpr (IsSharedPtr<D>::value) {
    return Variant(ObjectPtr(std::forward<R>(r)));
  } else {
    return Variant(std::forward<R>(r));
  }
}

template <class D>
const char* TypeName() {
  if constexpr (std::is_same_v<D, Variant>) return "Variant";
  if constexpr (std::is_same_v<D, bool>) return "Boolean";
  if constexpr (std::is_same_v<D, int16_t>) return "Integer";
  if constexpr (std::is_same_v<D, int32_t> || std::is_enum_v<D>) return "Long";
  if constexpr (std::is_same_v<D, float>) return "Single";
  if constexpr (std::is_same_v<D, double>) return "Double";
  if constexpr (std::is_same_v<D, Date>) return "Date";
  if constexpr (std::is_same_v<D, std::string>) return "String";
  if constexpr (std::is_same_v<D, SafeArray>) return "Array";
  if constexpr (IsSharedPtr<D>::value) return "Object";
  return "?";
}

template <class P>
constexpr bool kByRef = std::is_lvalue_reference_v<P> &&
                        !std::is_const_v<std::remove_reference_t<P>>;

// Signature of a callable taking the object as its first parameter (the
// call operator of a lambda; the object parameter is dropped).
template <class Op>
struct LambdaSignature;
template <class L, class R, class Self, class... P>
struct LambdaSignature<R (L::*)(Self, P...) const> {
  using Result = R;
  using Params = std::tuple<P...>;
};

// Signature of a member function pointer or of such a callable.
template <class F>
struct Signature : LambdaSignature<decltype(&F::operator())> {};
template <class C, class R, class... P>
struct Signature<R (C::*)(P...)> {
  using Result = R;
  using Params = std::tuple<P...>;
};
template <class C, class R, class... P>
struct Signature<R (C::*)(P...) const> : Signature<R (C::*)(P...)> {};

// Converts the arguments to P..., calls `fn` with them, writes back the
// by-reference ones and converts the result. Missing trailing arguments
// take their values from `defaults`.
template <class R, class... P, class G, size_t... I>
Variant CallWith(const G& fn, Args args, const std::vector<Variant>& defaults,
                 std::index_sequence<I...>) {
  constexpr size_t n = sizeof...(P);
  auto arg = [&](size_t i) -> const Variant& {
    return i < args.size() ? args[i] : defaults[i - (n - defaults.size())];
  };
  (void)arg;  // unused for members without parameters
  std::tuple<std::remove_cvref_t<P>...> values{
      FromVariant<std::remove_cvref_t<P>>(arg(I))...};
  auto write_back = [&] {
    ((kByRef<P> && I < args.size()
          ? void(args[I] = ToVariant(std::get<I>(values)))
          : void()),
     ...);
  };
  if constexpr (std::is_void_v<R>) {
    fn(std::get<I>(values)...);
    write_back();
    return Variant();
  } else if constexpr (!(kByRef<P> || ...)) {
    // Built in the caller's slot: a named result would be moved once more.
    return ToVariant(fn(std::get<I>(values)...));
  } else {
    Variant result = ToVariant(fn(std::get<I>(values)...));
    write_back();
    return result;
  }
}

template <class T, class F, class R, class... P, size_t... I>
Variant Call(const F& fn, T& self, Args args,
             const std::vector<Variant>& defaults,
             std::index_sequence<I...> seq) {
  return CallWith<R, P...>(
      [&](auto&... values) -> R { return std::invoke(fn, self, values...); },
      args, defaults, seq);
}

// "String", "Integer&" ...: the parameter types as ClassInfo reports them.
template <class... P>
std::vector<std::string> ParamTypes(std::tuple<P...>*) {
  return {(std::string(TypeName<std::remove_cvref_t<P>>()) +
           (kByRef<P> ? "&" : ""))...};
}

// Parameters of a function type void(P...).
template <class Sig>
struct FunctionParams;
template <class R, class... P>
struct FunctionParams<R(P...)> {
  using Params = std::tuple<P...>;
};

template <class T, class F, class R, class... P>
Accessor MakeAccessor(F fn, std::vector<Variant> defaults, std::tuple<P...>*) {
  Accessor a;
  a.param_types = ParamTypes(static_cast<std::tuple<P...>*>(nullptr));
  a.required = static_cast<int>(sizeof...(P) - defaults.size());
  a.call = [fn = std::move(fn), defaults = std::move(defaults)](
               Object& self, Args args) -> Variant {
    return Call<T, F, R, P...>(fn, static_cast<T&>(self), args, defaults,
                               std::index_sequence_for<P...>());
  };
  return a;
}

template <class T, class F>
Accessor MakeAccessor(F fn, std::vector<Variant> defaults) {
  using S = Signature<F>;
  return MakeAccessor<T, F, typename S::Result>(
      std::move(fn), std::move(defaults),
      static_cast<typename S::Params*>(nullptr));
}

}  // namespace dispatch

template <class T>
class ClassBuilder {
 public:
  explicit ClassBuilder(std::string name) : info_(std::move(name)) {}

  // A method; `defaults` are the values of the trailing optional parameters.
  template <class F>
  ClassBuilder& Method(std::string_view name, F fn,
                       std::vector<Variant> defaults = {}) {
    info_.Upsert(name).method = Make(std::move(fn), std::move(defaults));
    return *this;
  }
  template <class F>
  ClassBuilder& Get(std::string_view name, F fn,
                    std::vector<Variant> defaults = {}) {
    info_.Upsert(name).get = Make(std::move(fn), std::move(defaults));
    return *this;
  }
  // Property let and set: the new value is the function's last parameter.
  template <class F>
  ClassBuilder& Let(std::string_view name, F fn) {
    info_.Upsert(name).let = Make(std::move(fn), {});
    return *this;
  }
  template <class F>
  ClassBuilder& Set(std::string_view name, F fn) {
    info_.Upsert(name).set = Make(std::move(fn), {});
    return *this;
  }
  // A public field: get plus let (set for object fields; both for variants).
  template <class V>
  ClassBuilder& Field(std::string_view name, V T::*field) {
    MemberInfo& m = info_.Upsert(name);
    m.get = Make([field](T& self) -> V { return self.*field; }, {});
    auto put =
        Make([field](T& self, V value) { self.*field = std::move(value); }, {});
    constexpr bool kObject = dispatch::IsSharedPtr<V>::value;
    constexpr bool kVariant = std::is_same_v<V, Variant>;
    if (!kObject) m.let = put;
    if (kObject || kVariant) m.set = std::move(put);
    return *this;
  }
  // An event declared by parameter names only: sinks share every argument
  // slot with the raiser.
  ClassBuilder& Event(std::string name, std::vector<std::string> params) {
    info_.AddEvent({std::move(name), std::move(params), {}});
    return *this;
  }
  // An event with typed parameters, Sig being void(P...): a parameter of
  // non-const reference type is by reference, e.g.
  //   .Event<void(std::shared_ptr<Param>, SafeArray&)>("Row", {"p", "v"})
  // Raises std::invalid_argument when names and types differ in number.
  template <class Sig>
  ClassBuilder& Event(std::string name, std::vector<std::string> params) {
    using Params = typename dispatch::FunctionParams<Sig>::Params;
    if (params.size() != std::tuple_size_v<Params>) {
      throw std::invalid_argument("event " + name +
                                  ": one name per parameter type");
    }
    info_.AddEvent({std::move(name), std::move(params),
                    dispatch::ParamTypes(static_cast<Params*>(nullptr))});
    return *this;
  }

  ClassInfo Build() { return std::move(info_); }

 private:
  template <class F>
  static Accessor Make(F fn, std::vector<Variant> defaults) {
    return dispatch::MakeAccessor<T>(std::move(fn), std::move(defaults));
  }

  ClassInfo info_;
};

// A C++ sink for the event `name` (letter case ignored) whose handler takes
// typed parameters, Sig being void(P...): the arguments are converted as
// for a method, and what the handler leaves in a parameter of non-const
// reference type goes back into the raiser's slot. Other events pass by.
// A raise with another number of arguments raises 450.
//
//   events->Advise(EventHandler<void(int16_t, bool&)>(
//       "Ring", [](int16_t times, bool& cancel) { cancel = times > 2; }));
template <class Sig, class F>
EventSource::Callback EventHandler(std::string name, F fn) {
  return [name = std::move(name), fn = std::move(fn)](std::string_view event,
                                                      Args args) {
    if (!text::EqualsText(event, name)) return;
    using Params = typename dispatch::FunctionParams<Sig>::Params;
    constexpr size_t n = std::tuple_size_v<Params>;
    if (args.size() != n) throw Error::Runtime(err::kWrongNumberOfArguments);
    static const std::vector<Variant> no_defaults;
    [&]<class... P>(std::tuple<P...>*) {
      dispatch::CallWith<void, P...>(fn, args, no_defaults,
                                     std::index_sequence_for<P...>());
    }(static_cast<Params*>(nullptr));
  };
}

}  // namespace qv

#endif  // QVGLOBAL_COM_DISPATCH_H_
