// qv::ClassInfo describes the dispatch interface of one class: its members in
// interface order, each with the handlers for the ways it can be invoked
// (method, property get, let and set). Objects are reached by member name
// through it; names compare without regard to letter case and the member id
// is the 1-based position in interface order. A ClassInfo is built once per
// class (see dispatch.h) and lives for the whole process.
#ifndef QVGLOBAL_COM_CLASS_INFO_H_
#define QVGLOBAL_COM_CLASS_INFO_H_

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "com/variant.h"

namespace qv {

class Object;

enum class InvokeKind : uint8_t { kMethod = 1, kGet = 2, kLet = 4, kSet = 8 };

// The arguments of a call in their natural order (first argument first; for
// a property let or set the new value comes last). A by-reference argument
// is written back into its slot when the call returns.
using Args = std::span<Variant>;

// One way of invoking a member.
struct Accessor {
  std::function<Variant(Object&, Args)> call;  // empty when not supported
  std::vector<std::string> param_types;        // "String", "Integer&", ...
  int required = 0;                            // arguments that must be given
  explicit operator bool() const { return static_cast<bool>(call); }
};

struct MemberInfo {
  std::string name;
  int32_t id = 0;
  Accessor method, get, let, set;

  const Accessor& For(InvokeKind kind) const;
  // "method", "get/let", "get/set" ...: the kinds this member supports.
  std::string KindsText() const;
};

struct EventInfo {
  std::string name;
  std::vector<std::string> params;
};

class ClassInfo {
 public:
  explicit ClassInfo(std::string name) : name_(std::move(name)) {}

  const std::string& name() const { return name_; }
  const std::vector<MemberInfo>& members() const { return members_; }
  const std::vector<EventInfo>& events() const { return events_; }

  // The member of that name (letter case ignored), or nullptr.
  const MemberInfo* Find(std::string_view name) const;
  const MemberInfo* FindById(int32_t id) const;

  // Used while building: the member of that name, added at the end of the
  // interface when it is new.
  MemberInfo& Upsert(std::string_view name);
  void AddEvent(EventInfo event) { events_.push_back(std::move(event)); }

 private:
  // Hash and equality of names without regard to ASCII letter case, so that
  // a lookup takes the name as the caller spelt it, without a folded copy.
  struct NameHash {
    using is_transparent = void;
    size_t operator()(std::string_view s) const;
  };
  struct NameEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };

  std::string name_;
  std::vector<MemberInfo> members_;
  std::vector<EventInfo> events_;
  std::unordered_map<std::string, size_t, NameHash, NameEqual> index_;
};

}  // namespace qv

#endif  // QVGLOBAL_COM_CLASS_INFO_H_
