#include "com/safe_array.h"

#include <gtest/gtest.h>

#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::RaisesError;

constexpr char kOutOfRange[] = "Subscript out of range";

TEST(SafeArrayTest, IndexesRunFromAnyLowerBoundWithoutWrappingAround) {
  SafeArray a({"x", "y", "z"}, 1);
  EXPECT_EQ(a.LBound(), 1);
  EXPECT_EQ(a.UBound(), 3);
  EXPECT_EQ(a[1], Variant("x"));
  EXPECT_EQ(a[3], Variant("z"));
  a[2] = 7;
  EXPECT_EQ(a.items()[1], Variant(7));
  EXPECT_TRUE(RaisesError([&] { (void)a[0]; }, 9, kOutOfRange));
  EXPECT_TRUE(RaisesError([&] { (void)a[4]; }, 9, kOutOfRange));

  const SafeArray negative({1, 2}, -5);
  EXPECT_EQ(negative.UBound(), -4);
  EXPECT_EQ(negative[-5], Variant(1));
  EXPECT_TRUE(RaisesError([&] { (void)negative[-6]; }, 9, kOutOfRange));
  const SafeArray zero;
  EXPECT_EQ(zero.LBound(), 0);
  EXPECT_EQ(zero.UBound(), -1);
  EXPECT_TRUE(RaisesError([&] { (void)zero[0]; }, 9, kOutOfRange));

  const SafeArray one(std::vector<Variant>{}, 1);
  EXPECT_EQ(one.LBound(), 1);
  EXPECT_EQ(one.UBound(), 0);
  // Extreme bounds do not wrap around.
  SafeArray high = SafeArray::WithSize(2, INT32_MAX - 1);
  EXPECT_EQ(high.UBound(), INT32_MAX);
  EXPECT_TRUE(high[INT32_MAX].IsEmpty());
  EXPECT_TRUE(RaisesError([&] { (void)high[INT32_MIN]; }, 9, kOutOfRange));
  const SafeArray low({1}, INT32_MIN);
  EXPECT_TRUE(RaisesError([&] { (void)low[INT32_MAX]; }, 9, kOutOfRange));
}

TEST(SafeArrayTest, ResizeKeepsWhatFitsAndAddsEmpties) {
  SafeArray a({1, 2, 3}, 1);
  a.Resize(2);
  EXPECT_EQ(a, SafeArray({1, 2}, 1));
  a.Resize(4);
  EXPECT_EQ(a.UBound(), 4);
  EXPECT_TRUE(a[4].IsEmpty());
  a.Append("end");
  EXPECT_EQ(a[5], Variant("end"));
}

}  // namespace
}  // namespace qv
