// qv::ClassInfo describes the dispatch interface of one class: its members in
// interface order, each with the handlers for the ways it can be invoked
// (method, property get, let and set). Objects are reached by member name
// through it; names compare without regard to letter case and the member id
// is the 1-based position in interface order. A ClassInfo is built once per
// class (see dispatch.h) and lives for the whole process. Threads: a built
// ClassInfo does not change and may be read from any number of threads at
// once; building one is for one thread.
#ifndef QVGLOBAL_COM_CLASS_INFO_H_
#define QVGLOBAL_COM_CLASS_INFO_H_

#include <atomic>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
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

// One event of the class's outgoing interface. `param_types` is empty for
// an event declared by parameter names only; otherwise it holds one type
// per parameter in the form of Accessor::param_types, a trailing "&"
// marking a parameter the sinks receive by reference.
struct EventInfo {
  std::string name;
  std::vector<std::string> params;
  std::vector<std::string> param_types;

  // Whether the parameter at 0-based `index` is passed by reference; false
  // for an event without types and for an index past its parameters.
  bool IsByRef(size_t index) const;
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
  // The event of that name (letter case ignored), or nullptr.
  const EventInfo* FindEvent(std::string_view name) const;

  // Used while building: the member of that name, added at the end of the
  // interface when it is new.
  MemberInfo& Upsert(std::string_view name);
  void AddEvent(EventInfo event) { events_.push_back(std::move(event)); }

 private:
  // Enters the member at 1-based `position` into the index.
  void Place(size_t position);
  void Reindex();

  std::string name_;
  std::vector<MemberInfo> members_;
  std::vector<EventInfo> events_;
  // Open-addressing index over the member names, letter case ignored: a
  // power-of-two table at most half full, each slot holding a member's
  // position + 1 (0 for a free slot).
  std::vector<uint32_t> slots_;
  // The member found last, checked first: a host calls the same member in
  // a loop, and comparing its name as spelt costs far less than hashing
  // the name. Shared by all threads (a relaxed atomic: any member of this
  // class is a correct hint); a copy or move of the class info starts
  // without one.
  struct LastFound {
    std::atomic<const MemberInfo*> member{nullptr};
    LastFound() = default;
    LastFound(const LastFound&) {}
    LastFound& operator=(const LastFound&) {
      member.store(nullptr, std::memory_order_relaxed);
      return *this;
    }
  };
  mutable LastFound last_found_;
};

}  // namespace qv

#endif  // QVGLOBAL_COM_CLASS_INFO_H_
