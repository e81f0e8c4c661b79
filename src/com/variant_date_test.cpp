#include "com/variant_date.h"

#include <gtest/gtest.h>

namespace qv {
namespace {

// Dates before 1899-12-30 carry the time as a fraction counted away from the
// day, so that the time of day reads back the same on either side of day 0.
TEST(VariantDateTest, TimeBeforeDayZeroCountsAwayFromTheDay) {
  EXPECT_EQ(MakeDate(1899, 12, 29, 6, 0, 0).serial, -1.25);
  EXPECT_EQ(MakeDate(1899, 12, 31, 6, 0, 0).serial, 1.25);
  EXPECT_EQ(FormatDate(MakeDate(1899, 12, 29, 6, 0, 0)), "1899-12-29 06:00:00");
  EXPECT_EQ(FormatDate(MakeDate(1800, 1, 1, 23, 59, 59)),
            "1800-01-01 23:59:59");
  EXPECT_EQ(ParseDate("1899-12-29 18:00")->serial, -1.75);
}

}  // namespace
}  // namespace qv
