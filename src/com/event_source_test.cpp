#include "com/event_source.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/dispatch.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::CallbackObject;
using qv::testing::RaisesError;

// Raises Ring(nTimes, bCancel); a sink may cancel through bCancel.
class Alarm : public Dispatchable<Alarm> {
 public:
  bool Trigger(int16_t times) {
    Variant args[] = {times, false};
    events_.Raise(RingEvent(), args);
    return args[1].ToBoolean();
  }
  static const EventInfo& RingEvent() {
    return *StaticClassInfo().FindEvent("ring");
  }
  EventSource* events() override { return &events_; }

  static ClassInfo BuildClassInfo() {
    return ClassBuilder<Alarm>("Alarm")
        .Method("Trigger", &Alarm::Trigger)
        .Event<void(int16_t, bool&)>("Ring", {"nTimes", "bCancel"})
        .Build();
  }

 private:
  EventSource events_;
};

// A sink of the library's own kind: its Ring member handles the event.
class Listener : public Dispatchable<Listener> {
 public:
  void Ring(int16_t times, bool& cancel) {
    heard.push_back(times);
    cancel = times > 2;
  }
  std::vector<int16_t> heard;

  static ClassInfo BuildClassInfo() {
    return ClassBuilder<Listener>("Listener")
        .Method("ring", &Listener::Ring)
        .Build();
  }
};

// A sink with members, but none for Ring.
class Deaf : public Dispatchable<Deaf> {
 public:
  static ClassInfo BuildClassInfo() {
    return ClassBuilder<Deaf>("Deaf").Method("Other", [](Deaf&) {}).Build();
  }
};

class EventSourceTest : public ::testing::Test {
 protected:
  EventSource& events() { return *alarm_->events(); }
  std::shared_ptr<Alarm> alarm_ = std::make_shared<Alarm>();
};

TEST_F(EventSourceTest, RaisingWithoutSinksDoesNothingAndNothingIsNoSink) {
  EXPECT_TRUE(RaisesError([&] { events().Advise(ObjectPtr()); }, 91,
                          "Object variable or With block variable not set"));
  EXPECT_EQ(events().SinkCount(), 0u);
  EXPECT_FALSE(alarm_->Trigger(5));
  Variant args[] = {1, "unchanged"};
  events().Raise("Anything", args);
  EXPECT_EQ(args[1], Variant("unchanged"));
}

TEST_F(EventSourceTest, CallbacksSeeTheEventAndOnlyItsByRefSlotsAreShared) {
  const EventInfo& ring = Alarm::RingEvent();
  EXPECT_EQ(ring.param_types,
            (std::vector<std::string>{"Integer", "Boolean&"}));
  EXPECT_EQ(
      std::vector<bool>({ring.IsByRef(0), ring.IsByRef(1), ring.IsByRef(2)}),
      std::vector<bool>({false, true, false}));
  std::vector<Variant> seen;
  std::vector<std::string> names;
  events().Advise([](std::string_view, Args args) {
    args[0] = int16_t{99};
    args[1] = true;
  });
  events().Advise([&](std::string_view name, Args args) {
    names.emplace_back(name);
    seen.assign(args.begin(), args.end());
  });
  Variant args[] = {int16_t{1}, false};
  events().Raise(ring, args);
  EXPECT_EQ(names, std::vector<std::string>{"Ring"});
  EXPECT_EQ(seen, (std::vector<Variant>{int16_t{1}, true}));
  EXPECT_EQ(args[0], Variant(int16_t{1}));
  EXPECT_EQ(args[1], Variant(true));

  // Raised by name alone, every slot is shared.
  events().Raise("Ring", args);
  EXPECT_EQ(seen, (std::vector<Variant>{int16_t{99}, true}));
  EXPECT_EQ(args[0], Variant(int16_t{99}));
}

TEST_F(EventSourceTest, ByRefChangesBeforeAFailingSinkReachTheRaiser) {
  events().Advise([](std::string_view, Args args) { args[1] = "first"; });
  events().Advise([](std::string_view, Args args) {
    args[0] = int16_t{7};
    throw Error::Object1000("Sink: kaputt");
  });
  Variant args[] = {int16_t{1}, false};
  EXPECT_TRUE(RaisesError([&] { events().Raise(Alarm::RingEvent(), args); },
                          -2147220504, "Sink: kaputt"));
  EXPECT_EQ(args[0], Variant(int16_t{1}));
  EXPECT_EQ(args[1], Variant("first"));
}

TEST_F(EventSourceTest, TypedCppHandlerGetsAReference) {
  std::vector<int16_t> heard;
  events().Advise(EventHandler<void(int16_t, bool&)>(
      "RING", [&](int16_t times, bool& cancel) {
        heard.push_back(times);
        cancel = times > 2;
      }));
  EXPECT_TRUE(alarm_->Trigger(3));
  EXPECT_FALSE(alarm_->Trigger(2));
  Variant other[] = {"x"};
  events().Raise("Other", other);  // another event passes by
  EXPECT_EQ(heard, (std::vector<int16_t>{3, 2}));
  Variant too_few[] = {int16_t{1}};
  EXPECT_TRUE(
      RaisesError([&] { events().Raise("ring", too_few); }, 450,
                  "Wrong number of arguments or invalid property assignment"));
}

TEST(EventDeclarationTest, NamesAndTypesMustPair) {
  try {
    ClassBuilder<Alarm>("Alarm").Event<void(int16_t)>("Ring", {"a", "b"});
    FAIL() << "no error";
  } catch (const std::invalid_argument& e) {
    EXPECT_STREQ(e.what(), "event Ring: one name per parameter type");
  }
}

TEST_F(EventSourceTest, SinksRunInAdvisingOrderUntilUnadvised) {
  std::string order;
  const int32_t a =
      events().Advise([&](std::string_view, Args) { order += "a"; });
  auto listener = std::make_shared<Listener>();
  const int32_t l = events().Advise(listener);
  events().Advise([&](std::string_view, Args) { order += "c"; });
  EXPECT_NE(a, l);
  EXPECT_EQ(events().SinkCount(), 3u);
  alarm_->Trigger(1);
  EXPECT_EQ(order, "ac");
  EXPECT_EQ(listener->heard.size(), 1u);

  EXPECT_TRUE(events().Unadvise(a));
  EXPECT_FALSE(events().Unadvise(a));
  EXPECT_TRUE(events().Unadvise(listener));
  EXPECT_FALSE(events().Unadvise(listener));
  EXPECT_FALSE(events().Unadvise(12345));
  alarm_->Trigger(1);
  EXPECT_EQ(order, "acc");
  EXPECT_EQ(listener->heard.size(), 1u);
  EXPECT_EQ(events().SinkCount(), 1u);
}

TEST_F(EventSourceTest, ObjectSinksWithoutAHandlerArePassedOverErrorsPassOn) {
  events().Advise(std::make_shared<Deaf>());
  auto host_without = std::make_shared<CallbackObject>();
  events().Advise(host_without);
  auto host_with = std::make_shared<CallbackObject>();
  host_with->On("RING", [](InvokeKind kind, Args args) {
    EXPECT_EQ(kind, InvokeKind::kMethod);
    args[1] = true;
    return Variant();
  });
  events().Advise(host_with);

  EXPECT_TRUE(alarm_->Trigger(1));
  EXPECT_EQ(host_without->CallCount("Ring"), 1u);  // tried, answered 438
  ASSERT_EQ(host_with->CallCount("Ring"), 1u);
  EXPECT_EQ(host_with->calls()[0].args,
            (std::vector<Variant>{int16_t{1}, false}));
  EventSource other;
  auto host = std::make_shared<CallbackObject>();
  host->On("Ring", [](InvokeKind, Args) -> Variant {
    throw Error(438, "Grid.Ring", "inner member missing");
  });
  other.Advise(host);
  Variant args[] = {1, false};
  EXPECT_TRUE(RaisesError([&] { other.Raise("Ring", args); }, 438,
                          "inner member missing", "Grid.Ring"));

  EventSource third;
  third.Advise(std::make_shared<Listener>());
  Variant too_few[] = {1};
  EXPECT_TRUE(
      RaisesError([&] { third.Raise("Ring", too_few); }, 450,
                  "Wrong number of arguments or invalid property assignment"));
}

TEST_F(EventSourceTest, ObjectSinkIsKeptAliveAndASinkMayUnadviseItself) {
  auto listener = std::make_shared<Listener>();
  std::weak_ptr<Listener> watch = listener;
  events().Advise(std::move(listener));
  EXPECT_TRUE(alarm_->Trigger(3));  // its by-reference answer comes back
  EXPECT_FALSE(alarm_->Trigger(2));
  ASSERT_FALSE(watch.expired());
  EXPECT_EQ(watch.lock()->heard, (std::vector<int16_t>{3, 2}));
  events().Unadvise(ObjectPtr(watch.lock()));
  EXPECT_TRUE(watch.expired());
  int first = 0, second = 0;
  int32_t cookie = 0;
  cookie = events().Advise([&](std::string_view, Args) {
    ++first;
    events().Unadvise(cookie);
  });
  events().Advise([&](std::string_view, Args) { ++second; });
  alarm_->Trigger(1);
  alarm_->Trigger(1);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 2);
}

}  // namespace
}  // namespace qv
