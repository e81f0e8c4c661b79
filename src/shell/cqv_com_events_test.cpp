#include "shell/cqv_com_events.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "testing/callback_object.h"

namespace qv {
namespace {

using testing::CallbackObject;

TEST(CQvComEventsTest, FireRaisesTheEventToEverySink) {
  auto events = CreateObjectAs<CQvComEvents_t_>("qvglobal10.CQvComEvents_t_");
  events->Call("FireOnActiveBarClickToCM", {"tCut", "^x"});  // no sink
  auto sink = std::make_shared<CallbackObject>();
  sink->On("OnActiveBarClickToCM", [](InvokeKind, Args) { return Variant(); });
  std::vector<std::string> seen;
  events->events()->Advise(sink);
  events->events()->Advise([&](std::string_view name, Args a) {
    seen.push_back(std::string(name) + ":" + a[0].ToString() + ":" +
                   a[1].ToString());
  });
  events->FireOnActiveBarClickToCM("tPaste", "^v");
  ASSERT_EQ(sink->CallCount("OnActiveBarClickToCM"), 1u);
  EXPECT_EQ(sink->calls()[0].args, (std::vector<Variant>{"tPaste", "^v"}));
  EXPECT_EQ(seen, std::vector<std::string>{"OnActiveBarClickToCM:tPaste:^v"});
}

}  // namespace
}  // namespace qv
