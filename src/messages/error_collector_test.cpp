#include "messages/error_collector.h"

#include <gtest/gtest.h>

#include <thread>

#include "com/error.h"

namespace qv {
namespace {

class ErrorCollectorTest : public ::testing::Test {
 protected:
  void SetUp() override { ErrorCollector::Clear(); }
  void TearDown() override { ErrorCollector::Clear(); }
};

TEST_F(ErrorCollectorTest, KeepsTheLastErrorAndCountsReports) {
  EXPECT_FALSE(ErrorCollector::LastError().has_value());
  EXPECT_EQ(ErrorCollector::Count(), 0u);

  ErrorCollector::Report(Error::Runtime(err::kTypeMismatch));
  ErrorCollector::Report(Error(err::kObjectError1000, "Src", "Text"));

  ASSERT_TRUE(ErrorCollector::LastError().has_value());
  EXPECT_EQ(ErrorCollector::LastError()->number(), -2147220504);
  EXPECT_EQ(ErrorCollector::LastError()->source(), "Src");
  EXPECT_EQ(ErrorCollector::LastError()->description(), "Text");
  EXPECT_EQ(ErrorCollector::Count(), 2u);

  ErrorCollector::Clear();
  EXPECT_FALSE(ErrorCollector::LastError().has_value());
  EXPECT_EQ(ErrorCollector::Count(), 0u);
}

TEST_F(ErrorCollectorTest, EachThreadHasItsOwnErrors) {
  ErrorCollector::Report(Error::Runtime(err::kOverflow));
  size_t other_count = 99;
  bool other_had_error = true;
  std::thread other([&] {
    other_count = ErrorCollector::Count();
    other_had_error = ErrorCollector::LastError().has_value();
    ErrorCollector::Report(Error::Runtime(err::kTypeMismatch));
  });
  other.join();
  EXPECT_EQ(other_count, 0u);
  EXPECT_FALSE(other_had_error);
  EXPECT_EQ(ErrorCollector::Count(), 1u);
  EXPECT_EQ(ErrorCollector::LastError()->number(), err::kOverflow);
}

}  // namespace
}  // namespace qv
