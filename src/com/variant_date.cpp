#include "com/variant_date.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdio>

#include "com/error.h"

namespace qv {
namespace {

// Days between 1970-01-01 and a civil date (proleptic Gregorian).
int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

void CivilFromDays(int64_t z, int& year, int& month, int& day) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  year = static_cast<int>(static_cast<int64_t>(yoe) + era * 400 + (month <= 2));
}

// 1899-12-30 relative to 1970-01-01.
constexpr int64_t kEpochOffset = -25569;

}  // namespace

Date MakeDate(int year, int month, int day, int hour, int minute, int second) {
  const int64_t days = DaysFromCivil(year, static_cast<unsigned>(month),
                                     static_cast<unsigned>(day)) -
                       kEpochOffset;
  const double time = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
  // Before day 0 the time counts away from the day (-1.25 is 1899-12-29
  // 06:00), as FormatDate reads it.
  return Date{days < 0 ? static_cast<double>(days) - time
                       : static_cast<double>(days) + time};
}

int64_t RoundTimeOfDay(Date d, int64_t units_per_day, double& whole) {
  // Negative serials count the time away from the day, as automation does.
  whole = std::trunc(d.serial);
  int64_t units = std::llround(std::fabs(d.serial - whole) *
                               static_cast<double>(units_per_day));
  if (units >= units_per_day) {
    // The next calendar day is one up on either side of day 0: -2.99999 is
    // 1899-12-28 near midnight, and the day after is -1 (1899-12-29).
    const double next = whole + 1;
    if (next > kLastDaySerial) {
      units = units_per_day - 1;
    } else {
      units -= units_per_day;
      whole = next;
    }
  }
  return units;
}

std::string FormatDate(Date d) {
  if (!(d.serial > kFirstDaySerial - 1) || !(d.serial < kLastDaySerial + 1)) {
    throw Error::Runtime(err::kOverflow);  // no calendar date
  }
  double whole = 0;
  const int64_t seconds = RoundTimeOfDay(d, 86400, whole);
  int year, month, day;
  CivilFromDays(static_cast<int64_t>(whole) + kEpochOffset, year, month, day);
  const std::string time = fmt::format("{:02}:{:02}:{:02}", seconds / 3600,
                                       seconds / 60 % 60, seconds % 60);
  if (whole == 0 && seconds != 0) return time;
  const std::string date = fmt::format("{:04}-{:02}-{:02}", year, month, day);
  return seconds == 0 ? date : date + " " + time;
}

namespace {

// "hh:mm:ss" or "hh:mm" making up the whole of `text`.
bool ReadTime(const char* text, int& h, int& mi, int& sec) {
  int used = 0;
  sec = 0;
  if (std::sscanf(text, "%2d:%2d:%2d%n", &h, &mi, &sec, &used) < 3) {
    sec = used = 0;
    if (std::sscanf(text, "%2d:%2d%n", &h, &mi, &used) != 2) return false;
  }
  return text[used] == '\0' && h >= 0 && h <= 23 && mi >= 0 && mi <= 59 &&
         sec >= 0 && sec <= 59;
}

}  // namespace

std::optional<Date> ParseDate(std::string_view text) {
  const std::string s(text);
  int y, mo, d, h = 0, mi = 0, sec = 0, used = 0;
  if (std::sscanf(s.c_str(), "%4d-%2d-%2d%n", &y, &mo, &d, &used) != 3) {
    // A pure time, as FormatDate prints one.
    if (!ReadTime(s.c_str(), h, mi, sec)) return std::nullopt;
    return Date{(h * 3600.0 + mi * 60.0 + sec) / 86400.0};
  }
  if (static_cast<size_t>(used) < s.size()) {
    const char sep = s[static_cast<size_t>(used)];
    if (sep != ' ' && sep != 'T') return std::nullopt;
    if (!ReadTime(s.c_str() + used + 1, h, mi, sec)) return std::nullopt;
  }
  if (mo < 1 || mo > 12 || d < 1 || d > 31) return std::nullopt;
  return MakeDate(y, mo, d, h, mi, sec);
}

}  // namespace qv
