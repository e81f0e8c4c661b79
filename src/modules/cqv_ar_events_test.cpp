#include "modules/cqv_ar_events.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "modules/car_bef_det_sec_param.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using Param = CARBefDetSecParam_t_;

struct Row {
  std::shared_ptr<Param> param = std::make_shared<Param>();
  SafeArray values = SafeArray({"R1", 2.5, Variant()}, 1);
  Row() { param->init(3, 7, false); }
};

TEST(CARBefDetSecParamTest,
     InitClearsTheRequestsAndLastRowStateIsReadOnlyByName) {
  Param param;
  param.init(1, 1, false);
  param.SetBold(true);
  param.SetEmptyRow(true);
  param.SetIgnoreQvDsRow(true);
  param.SetAddRow(true);
  param.init(5, 9, true);
  EXPECT_EQ(param.RowQvDs(), 5);
  EXPECT_EQ(param.RowTotal(), 9);
  EXPECT_TRUE(param.WasLastRowEmpty());
  EXPECT_FALSE(param.Bold());
  EXPECT_FALSE(param.EmptyRow());
  EXPECT_FALSE(param.IgnoreQvDsRow());
  EXPECT_FALSE(param.AddRow());
  param.init(6, 10, false);
  EXPECT_FALSE(param.WasLastRowEmpty());
  ObjectPtr by_name = CreateObject("qvglobal10.CARBefDetSecParam_t_");
  by_name->Call("INIT", {int32_t{4}, int16_t{8}, true});
  EXPECT_EQ(by_name->Get("wasLastRowEmpty"), Variant(true));
  EXPECT_TRUE(
      testing::RaisesError([&] { by_name->Let("WasLastRowEmpty", false); }, 438,
                           "Object doesn't support this property or "
                           "method"));
}

TEST(CQvAREventsTest,
     WithoutListenerNothingChangesATypedOneChangesFlagsAndValues) {
  CQvAREvents events;
  Row row;
  const SafeArray before = row.values;
  events.REBefPrRowDetSec(row.param, row.values);
  EXPECT_EQ(row.values, before);
  EXPECT_EQ(row.values.LBound(), 1);
  EXPECT_FALSE(row.param->Bold() || row.param->EmptyRow() ||
               row.param->IgnoreQvDsRow() || row.param->AddRow() ||
               row.param->WasLastRowEmpty());
  events.events()->Advise(
      EventHandler<void(std::shared_ptr<Param>, SafeArray&)>(
          "BefPrRowDetSec",
          [&](std::shared_ptr<Param> param, SafeArray& values) {
            EXPECT_EQ(param, row.param);
            EXPECT_EQ(param->RowQvDs(), 3);
            param->SetBold(true);
            param->SetAddRow(true);
            values[2] = int16_t{-1};
            values[3] = "neu";
          }));
  events.REBefPrRowDetSec(row.param, row.values);
  EXPECT_TRUE(row.param->Bold());
  EXPECT_TRUE(row.param->AddRow());
  EXPECT_FALSE(row.param->EmptyRow());
  EXPECT_EQ(row.values, SafeArray({"R1", int16_t{-1}, "neu"}, 1));
}

TEST(CQvAREventsTest, ListenersMayReplaceTheWholeArray) {
  CQvAREvents events;
  Row row;
  std::vector<SafeArray> seen;
  events.events()->Advise([](std::string_view, Args args) {
    args[0] = Variant();  // by value: the next listener still gets the param
    args[1] = Variant(SafeArray({"ersetzt"}, 0));
  });
  events.events()->Advise([&](std::string_view, Args args) {
    EXPECT_TRUE(args[0].ToObjectAs<Param>());
    seen.push_back(args[1].ToArray());
    args[1].ToArray().Append(int32_t{2});
  });
  events.REBefPrRowDetSec(row.param, row.values);
  EXPECT_EQ(seen, std::vector<SafeArray>{SafeArray({"ersetzt"}, 0)});
  EXPECT_EQ(row.values, SafeArray({"ersetzt", int32_t{2}}, 0));

  events.events()->Advise([](std::string_view, Args args) { args[1] = 5; });
  const SafeArray before = row.values;
  EXPECT_TRUE(testing::RaisesError(
      [&] { events.REBefPrRowDetSec(row.param, row.values); }, 13,
      "Type mismatch"));
  EXPECT_EQ(row.values, before);
}

TEST(CQvAREventsTest, ObjectListenerGetsTheArrayByReference) {
  auto events = CreateObjectAs<CQvAREvents>("qvglobal10.CQvAREvents");
  // A listener written as an automation object: its handler is reached by
  // the event's name and may write into the by-reference array.
  auto listener = std::make_shared<testing::CallbackObject>();
  listener->On("BefPrRowDetSec", [](InvokeKind, Args args) {
    auto param = args[0].ToObjectAs<Param>();
    param->SetIgnoreQvDsRow(true);
    param->SetEmptyRow(!param->WasLastRowEmpty());
    SafeArray& values = args[1].ToArray();
    values[values.LBound()] = "geändert";
    values.Append(int32_t{42});
    return Variant();
  });
  events->events()->Advise(listener);
  Row row;
  events->REBefPrRowDetSec(row.param, row.values);
  EXPECT_EQ(listener->CallCount("befprrowdetsec"), 1u);
  EXPECT_TRUE(row.param->IgnoreQvDsRow());
  EXPECT_TRUE(row.param->EmptyRow());
  EXPECT_EQ(row.values,
            SafeArray({"geändert", 2.5, Variant(), int32_t{42}}, 1));
}

TEST(CQvAREventsTest, ListenerErrorReachesTheCallerAfterEarlierChanges) {
  CQvAREvents events;
  events.events()->Advise(
      [](std::string_view, Args args) { args[1].ToArray()[1] = "vorher"; });
  events.events()->Advise([](std::string_view, Args) {
    throw Error::Object1000("Listener: Fehler");
  });
  Row row;
  EXPECT_TRUE(testing::RaisesError(
      [&] { events.REBefPrRowDetSec(row.param, row.values); }, -2147220504,
      "Listener: Fehler"));
  EXPECT_EQ(row.values[1], Variant("vorher"));
}

}  // namespace
}  // namespace qv
