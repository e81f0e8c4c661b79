// qv::EventSource keeps the sinks of one object's outgoing interface and
// raises events to them. A sink is either an object, whose member of the
// event's name is invoked as a method, or a C++ callback (see
// EventHandler in dispatch.h for one with typed parameters). An event
// raised by its EventInfo passes the parameters it marks by reference in
// the raiser's slots, so what a sink leaves there (a changed element or a
// whole new array) comes back to the raiser and reaches the next sink;
// every other parameter reaches each sink as its own copy. An event raised
// by name alone shares every slot with the sinks. Raising an event with no
// sink does nothing. The source holds its sinks strongly until they are
// unadvised.
// Threads: an EventSource belongs to its object and is used by the thread that
// uses the object; sinks are called on the raising thread. It takes no locks.
#ifndef QVGLOBAL_COM_EVENT_SOURCE_H_
#define QVGLOBAL_COM_EVENT_SOURCE_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "com/class_info.h"

namespace qv {

class EventSource {
 public:
  using Callback = std::function<void(std::string_view event, Args args)>;

  // Adds a sink; the result is the cookie that Unadvise takes.
  int32_t Advise(std::shared_ptr<Object> sink);
  int32_t Advise(Callback callback);
  // Removes a sink; false when the cookie or object is not advised.
  bool Unadvise(int32_t cookie);
  bool Unadvise(const std::shared_ptr<Object>& sink);
  size_t SinkCount() const { return sinks_.size(); }

  // Calls every sink in the order of advising. An object sink that has no
  // member of the event's name is passed over; any other error of a sink
  // reaches the raiser.
  void Raise(std::string_view event, Args args) const;
  // The same for an event of the class's interface, with its by-reference
  // marks. What the sinks up to a failing one left in by-reference slots
  // stays there when the error reaches the raiser.
  void Raise(const EventInfo& event, Args args) const;

 private:
  struct Sink {
    int32_t cookie;
    std::shared_ptr<Object> object;
    Callback callback;
  };
  // Calls one sink with the arguments as they stand.
  static void CallSink(const Sink& sink, const EventInfo& event, Args args);

  std::vector<Sink> sinks_;
  int32_t next_cookie_ = 1;
};

}  // namespace qv

#endif  // QVGLOBAL_COM_EVENT_SOURCE_H_
