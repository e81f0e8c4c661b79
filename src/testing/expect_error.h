// Test helper: checks that a call raises a qv::Error with an exact number and
// description (and, where given, source).
//
//   EXPECT_TRUE(qv::testing::RaisesError([&] { obj->Call("Nope"); }, 438,
//               "Object doesn't support this property or method"));
//
// Any other outcome (no error, another exception, a different number or
// text) fails the assertion with a message saying what happened instead.
#ifndef QVGLOBAL_TESTING_EXPECT_ERROR_H_
#define QVGLOBAL_TESTING_EXPECT_ERROR_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "com/error.h"

namespace qv::testing {

template <class F>
::testing::AssertionResult RaisesError(
    F&& call, int32_t number, std::string_view description,
    std::optional<std::string_view> source = std::nullopt) {
  try {
    call();
  } catch (const Error& e) {
    if (e.number() == number && e.description() == description &&
        (!source || e.source() == *source)) {
      return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << "raised " << e.number() << " \"" << e.description()
           << "\" (source \"" << e.source() << "\"), expected " << number
           << " \"" << description << "\""
           << (source ? " (source \"" + std::string(*source) + "\")" : "");
  } catch (const std::exception& e) {
    return ::testing::AssertionFailure()
           << "threw a non-qv exception: " << e.what();
  }
  return ::testing::AssertionFailure() << "raised nothing, expected " << number
                                       << " \"" << description << "\"";
}

}  // namespace qv::testing

#endif  // QVGLOBAL_TESTING_EXPECT_ERROR_H_
