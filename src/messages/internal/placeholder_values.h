// Reading the value of one placeholder from the values array of
// ConvertMsg (convert_msg.h): element 0 decides whether the values sit in a
// collection, in an inner array or in the array itself.
// Threads: no state.
#ifndef QVGLOBAL_MESSAGES_INTERNAL_PLACEHOLDER_VALUES_H_
#define QVGLOBAL_MESSAGES_INTERNAL_PLACEHOLDER_VALUES_H_

#include <cstdint>

#include "com/safe_array.h"
#include "com/variant.h"

namespace qv::internal {

// Raises "Der Array im Parameter ValuePlatzHalter ist nicht 0-basierent."
// (0x800403E8) when element 0 is an array that does not start at 0.
void CheckInnerArrayBase(const SafeArray& values);

// The value of placeholder `n` (n >= 1); Empty when none is found. Raises 9
// when `values` or its inner array cannot be indexed as required.
Variant PlaceholderValue(const SafeArray& values, int32_t n);

}  // namespace qv::internal

#endif  // QVGLOBAL_MESSAGES_INTERNAL_PLACEHOLDER_VALUES_H_
