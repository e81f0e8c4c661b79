#include "com/variant_date.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "testing/expect_error.h"

namespace qv {
namespace {

// Dates before 1899-12-30 carry the time as a fraction counted away from the
// day, so that the time of day reads back the same on either side of day 0.
TEST(VariantDateTest, TimesBeforeDayZeroAndPureTimesReadBack) {
  EXPECT_EQ(MakeDate(1899, 12, 29, 6, 0, 0).serial, -1.25);
  EXPECT_EQ(MakeDate(1899, 12, 31, 6, 0, 0).serial, 1.25);
  EXPECT_EQ(FormatDate(MakeDate(1899, 12, 29, 6, 0, 0)), "1899-12-29 06:00:00");
  EXPECT_EQ(FormatDate(MakeDate(1800, 1, 1, 23, 59, 59)),
            "1800-01-01 23:59:59");
  EXPECT_EQ(ParseDate("1899-12-29 18:00")->serial, -1.75);
  // A pure time prints without a date and reads back ("-.5" was a fuzzing
  // find: it printed as "12:00:00", which did not read back).
  const Date noon_before_day_zero = Variant("-.5").ToDate();
  EXPECT_EQ(FormatDate(noon_before_day_zero), "12:00:00");
  EXPECT_EQ(ParseDate(FormatDate(noon_before_day_zero))->serial, 0.5);
  EXPECT_EQ(ParseDate("18:00")->serial, 0.75);
  for (const char* bad : {"24:00", "12:60", "-1:00", "12:00:", "12:00 x",
                          "2024-01-01 -1:00", "2024-01-01 12"}) {
    EXPECT_FALSE(ParseDate(bad).has_value()) << bad;
  }
}

// Half a second before midnight rounds into the next day, except on the
// last day an automation date holds, which keeps its last second.
TEST(VariantDateTest, TimesRoundToTheSecondWithoutLeavingYear9999) {
  const double ms = 1.0 / 86400000.0;
  const Date last = {kLastDaySerial + 86399999 * ms};
  struct Case {
    Date date;
    const char* text;
  };
  const Case cases[] = {
      {last, "9999-12-31 23:59:59"},
      {{MakeDate(2024, 2, 28).serial + 86399600 * ms}, "2024-02-29"},
      {{MakeDate(2024, 2, 28).serial + 86399400 * ms}, "2024-02-28 23:59:59"},
      // 1899-12-28 23:59:59.7: the next day is 1899-12-29, serial -1.
      {{-(2 + 86399700 * ms)}, "1899-12-29"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(FormatDate(c.date), c.text);
  }
  EXPECT_EQ(FormatDate(*ParseDate(FormatDate(last))), "9999-12-31 23:59:59");
  EXPECT_EQ(Variant(last).ToString(), "9999-12-31 23:59:59");
  EXPECT_EQ(Variant(Variant(last).ToString()).ToDate().serial,
            MakeDate(9999, 12, 31, 23, 59, 59).serial);

  double whole = 0;
  EXPECT_EQ(RoundTimeOfDay(last, 86400000, whole), 86399999);
  EXPECT_EQ(whole, kLastDaySerial);
}

// Numbers become dates only within 100-01-01 to 9999-12-31 ("1e308" was a
// fuzzing find: it became a date that could not be printed).
TEST(VariantDateTest, NumbersOutsideTheCalendarOverflow) {
  struct Case {
    Variant value;
    bool fits;
  };
  const Case cases[] = {
      {Variant("1e308"), false},
      {Variant(1e308), false},
      {Variant(std::string("-1e300")), false},
      {Variant(kLastDaySerial + 1), false},
      {Variant(kFirstDaySerial - 1), false},
      {Variant(std::numeric_limits<double>::infinity()), false},
      {Variant(kLastDaySerial + 0.5), true},
      {Variant(kFirstDaySerial - 0.5), true},
      {Variant("2958465"), true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.value.Describe());
    if (c.fits) {
      EXPECT_EQ(c.value.ToDate().serial, c.value.ToDouble());
    } else {
      EXPECT_TRUE(
          testing::RaisesError([&] { c.value.ToDate(); }, 6, "Overflow"));
    }
  }
  EXPECT_TRUE(
      testing::RaisesError([] { FormatDate(Date{1e308}); }, 6, "Overflow"));
}

}  // namespace
}  // namespace qv
