#include "com/event_source.h"

#include <algorithm>

#include "com/error.h"
#include "com/object.h"

namespace qv {

int32_t EventSource::Advise(std::shared_ptr<Object> sink) {
  if (!sink) throw Error::Runtime(err::kObjectVariableNotSet);
  sinks_.push_back({next_cookie_, std::move(sink), nullptr});
  return next_cookie_++;
}

int32_t EventSource::Advise(Callback callback) {
  sinks_.push_back({next_cookie_, nullptr, std::move(callback)});
  return next_cookie_++;
}

bool EventSource::Unadvise(int32_t cookie) {
  auto it = std::find_if(sinks_.begin(), sinks_.end(), [cookie](const Sink& s) {
    return s.cookie == cookie;
  });
  if (it == sinks_.end()) return false;
  sinks_.erase(it);
  return true;
}

bool EventSource::Unadvise(const std::shared_ptr<Object>& sink) {
  auto it = std::find_if(sinks_.begin(), sinks_.end(),
                         [&sink](const Sink& s) { return s.object == sink; });
  if (it == sinks_.end()) return false;
  sinks_.erase(it);
  return true;
}

void EventSource::Raise(std::string_view event, Args args) const {
  const EventInfo untyped{std::string(event), {}, {}};
  // A sink may unadvise itself while it runs: walk a copy.
  const std::vector<Sink> sinks = sinks_;
  for (const Sink& sink : sinks) CallSink(sink, untyped, args);
}

void EventSource::Raise(const EventInfo& event, Args args) const {
  const std::vector<Sink> sinks = sinks_;
  for (const Sink& sink : sinks) {
    // Each sink gets its own copy of the by-value arguments; by-reference
    // slots go back to the raiser even when the sink fails.
    std::vector<Variant> own(args.begin(), args.end());
    struct WriteBack {
      const EventInfo& event;
      Args to;
      std::vector<Variant>& from;
      ~WriteBack() {
        for (size_t i = 0; i < to.size(); ++i) {
          if (event.IsByRef(i)) to[i] = std::move(from[i]);
        }
      }
    } write_back{event, args, own};
    CallSink(sink, event, own);
  }
}

void EventSource::CallSink(const Sink& sink, const EventInfo& event,
                           Args args) {
  if (sink.callback) {
    sink.callback(event.name, args);
    return;
  }
  const ClassInfo& info = sink.object->GetClassInfo();
  if (!info.members().empty() && info.Find(event.name) == nullptr) return;
  try {
    sink.object->InvokeEvent(event, args);
  } catch (const Error& e) {
    // A host sink without a handler for this event answers 438.
    if (!info.members().empty() || e.number() != err::kObjectDoesntSupport ||
        !e.source().empty()) {
      throw;
    }
  }
}

}  // namespace qv
