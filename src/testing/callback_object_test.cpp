#include "testing/callback_object.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "testing/expect_error.h"

namespace qv::testing {
namespace {

TEST(CallbackObjectTest, MembersAreReachedByNameIgnoringCase) {
  auto grid = std::make_shared<CallbackObject>();
  grid->On("AddRow", [](InvokeKind kind, Args args) {
    return Variant(static_cast<int32_t>(args.size()) +
                   (kind == InvokeKind::kGet ? 100 : 0));
  });
  ObjectPtr object = grid;
  EXPECT_EQ(object->Call("addrow", {"a", "b"}), Variant(2));
  EXPECT_EQ(object->Get("ADDROW"), Variant(100));
  EXPECT_TRUE(RaisesError([&] { object->Call("Missing"); }, 438,
                          "Object doesn't support this property or method"));
}

TEST(CallbackObjectTest, HandlersMayWriteIntoByReferenceArguments) {
  CallbackObject form;
  form.On("QueryUnload", [](InvokeKind, Args args) {
    args[0] = true;
    return Variant();
  });
  Variant cancel[] = {false};
  form.Invoke("QueryUnload", InvokeKind::kMethod, cancel);
  EXPECT_EQ(cancel[0], Variant(true));
  // The record keeps the arguments as they came in.
  EXPECT_EQ(form.calls()[0].args, std::vector<Variant>{false});
}

TEST(CallbackObjectTest, PropertiesStoreLetAndSetValues) {
  auto control = std::make_shared<CallbackObject>();
  control->Property("Caption", "start");
  control->Property("Tag");
  control->Let("caption", "changed");
  EXPECT_EQ(control->Get("Caption"), Variant("changed"));
  EXPECT_EQ(control->PropertyValue("CAPTION"), Variant("changed"));
  auto tag = std::make_shared<CallbackObject>();
  control->Set("Tag", tag);
  EXPECT_EQ(control->PropertyValue("Tag").ToObject(), tag);
  EXPECT_TRUE(
      RaisesError([&] { control->Get("Caption", {1}); }, 450,
                  "Wrong number of arguments or invalid property assignment"));
  EXPECT_TRUE(control->PropertyValue("Unknown").IsEmpty());
}

TEST(CallbackObjectTest, RecordsEveryInvocation) {
  CallbackObject toolbar;
  toolbar.On("Refresh", [](InvokeKind, Args) { return Variant(); });
  toolbar.Call("Refresh");
  toolbar.Call("REFRESH", {1});
  EXPECT_THROW(toolbar.Call("Redraw"), Error);
  ASSERT_EQ(toolbar.calls().size(), 3u);
  EXPECT_EQ(toolbar.calls()[2].name, "Redraw");
  EXPECT_EQ(toolbar.CallCount("refresh"), 2u);
  const auto refreshes = toolbar.CallsTo("Refresh");
  ASSERT_EQ(refreshes.size(), 2u);
  EXPECT_EQ(refreshes[1].name, "REFRESH");
  EXPECT_EQ(refreshes[1].kind, InvokeKind::kMethod);
  EXPECT_EQ(refreshes[1].args, std::vector<Variant>{1});
  toolbar.ClearCalls();
  EXPECT_EQ(toolbar.CallCount("Refresh"), 0u);
}

}  // namespace
}  // namespace qv::testing
