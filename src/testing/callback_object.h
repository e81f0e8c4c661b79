// qv::testing::CallbackObject is a qv::Object whose members are given at run
// time, for tests and for fakes of host objects (grids, toolbars, forms) that
// the library reaches only by member name.
//
//   auto grid = std::make_shared<qv::testing::CallbackObject>();
//   grid->On("AddRow", [](qv::InvokeKind, qv::Args args) {
//     return qv::Variant(static_cast<int32_t>(args.size()));
//   });
//   grid->Property("Caption", "Errors");       // get, let and set
//   ... hand `grid` to the code under test ...
//   EXPECT_EQ(grid->CallCount("addrow"), 1);
//
// Member names compare without regard to letter case. A member answers every
// kind of invocation (method, get, let, set); the handler sees the kind and
// the arguments and may write into by-reference arguments. An unknown name
// raises 438, like an object that lacks the member. Every invocation, known
// or not, is recorded with its name, kind and arguments as they came in.
// The record holds object arguments strongly; ClearCalls releases them.
// The object also owns an EventSource, so a fake can raise events to sinks.
#ifndef QVGLOBAL_TESTING_CALLBACK_OBJECT_H_
#define QVGLOBAL_TESTING_CALLBACK_OBJECT_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "com/event_source.h"
#include "com/object.h"
#include "com/variant.h"

namespace qv::testing {

class CallbackObject : public Object {
 public:
  using Handler = std::function<Variant(InvokeKind kind, Args args)>;

  // One recorded invocation. `name` is spelt as the caller spelt it.
  struct Invocation {
    std::string name;
    InvokeKind kind;
    std::vector<Variant> args;
  };

  // Adds or replaces the member `name`.
  CallbackObject& On(std::string_view name, Handler handler);
  // A stored property: a get returns the value, a let or set with one
  // argument replaces it. Other argument counts raise 450.
  CallbackObject& Property(std::string_view name, Variant initial = {});
  // The current value of a property added with Property (Empty if none).
  Variant PropertyValue(std::string_view name) const;

  Variant Invoke(std::string_view name, InvokeKind kind, Args args) override;
  EventSource* events() override { return &events_; }

  const std::vector<Invocation>& calls() const { return calls_; }
  // The recorded invocations of one member (letter case ignored).
  std::vector<Invocation> CallsTo(std::string_view name) const;
  size_t CallCount(std::string_view name) const;
  void ClearCalls() { calls_.clear(); }

 private:
  std::unordered_map<std::string, Handler> handlers_;  // by folded name
  std::unordered_map<std::string, std::shared_ptr<Variant>> properties_;
  std::vector<Invocation> calls_;
  EventSource events_;
};

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_CALLBACK_OBJECT_H_
