// Conversions between automation dates (days since 1899-12-30, the fraction
// being the time of day) and invariant ISO 8601 text.
#ifndef QVGLOBAL_COM_VARIANT_DATE_H_
#define QVGLOBAL_COM_VARIANT_DATE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "com/variant.h"

namespace qv {

// 9999-12-31 and 100-01-01, the last and the first day an automation date
// holds.
inline constexpr double kLastDaySerial = 2958465;
inline constexpr double kFirstDaySerial = -657434;

// Rounds the time of `d` to whole units (`units_per_day`: 86400 for seconds,
// 86400000 for milliseconds): `whole` gets the day, the result the units
// since midnight. A time that rounds up to midnight moves to the next day,
// except on 9999-12-31, where it stays at the last unit of the day, so the
// largest date stays in year 9999.
int64_t RoundTimeOfDay(Date d, int64_t units_per_day, double& whole);

// A date from its calendar parts; the time parts may be 0.
Date MakeDate(int year, int month, int day, int hour = 0, int minute = 0,
              int second = 0);
// "2024-03-01 12:30:00" (rounded to the second, see RoundTimeOfDay; a
// serial outside 100-01-01 to 9999-12-31 raises 6, Overflow); the
// time is left out at midnight and the date is
// left out for a pure time (serial between 0 and 1), as automation prints.
std::string FormatDate(Date d);
// Parses "YYYY-MM-DD", "YYYY-MM-DD hh:mm[:ss]", "YYYY-MM-DDThh:mm[:ss]"
// and a pure time "hh:mm[:ss]" (a serial between 0 and 1).
std::optional<Date> ParseDate(std::string_view text);

}  // namespace qv

#endif  // QVGLOBAL_COM_VARIANT_DATE_H_
