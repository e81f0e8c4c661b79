#include "shell/cqv_com_events.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "com/class_factory.h"

namespace qv {
namespace {

TEST(CQvComEventsTest, FireRaisesTheEventWithToolAndKeys) {
  auto events = CreateObjectAs<CQvComEvents_t_>("qvglobal10.CQvComEvents_t_");
  std::vector<std::string> seen;
  events->events()->Advise([&](std::string_view name, Args a) {
    seen.push_back(std::string(name) + ":" + a[0].ToString() + ":" +
                   a[1].ToString());
  });
  events->Call("FireOnActiveBarClickToCM", {"tPaste", "^v"});
  EXPECT_EQ(seen, std::vector<std::string>{"OnActiveBarClickToCM:tPaste:^v"});
}

}  // namespace
}  // namespace qv
