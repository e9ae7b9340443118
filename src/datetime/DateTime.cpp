#include "datetime/DateTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace rvf {

namespace {

constexpr i32 kSecondsPerDay = 86400;
constexpr i32 kSecondsPerHour = 3600;
constexpr i32 kSecondsPerMinute = 60;
constexpr i32 kHighestYear = 9999;
// Days from the day before 1 January of year 1 to 30 December 1899.
constexpr i32 kEpochDays = 693959;
// From 30 December 1899 to 1 January 1970, where the day count of std::chrono starts.
constexpr i32 kLibraryEpoch = 25569;
// 1 January of year 0 and 31 December 9999.
constexpr i32 kFirstDay = -693959;
constexpr i32 kLastDay = 2958465;

constexpr i32 kMonthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr i32 kDaysBeforeMonth[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

bool isLeapYear(i32 year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

i32 monthLength(i32 year, i32 month) {
  return kMonthLengths[month - 1] + (month == 2 && isLeapYear(year) ? 1 : 0);
}

bool isInRange(i32 year, i32 month, i32 day, i32 hour, i32 minute, i32 second) {
  return year >= 0 && year <= kHighestYear && month >= 1 && month <= 12 && day >= 1 &&
         day <= monthLength(year, month) && hour >= 0 && hour < 24 && minute >= 0 && minute < 60 &&
         second >= 0 && second < 60;
}

}  // namespace

bool DateTime::EncodeDateTime(i32 year, i32 month, i32 day, i32 hour, i32 minute, i32 second,
                              f64& dayNumber) {
  if (!isInRange(year, month, day, hour, minute, second)) {
    return false;
  }
  i32 days = 365 * year + year / 4 - year / 100 + year / 400;
  days += kDaysBeforeMonth[month - 1] + day;
  days -= isLeapYear(year) && month <= 2 ? 1 : 0;
  days -= kEpochDays;
  const i32 seconds = second + kSecondsPerMinute * minute + kSecondsPerHour * hour;
  const f64 fraction = seconds / static_cast<f64>(kSecondsPerDay);
  dayNumber = days < 0 ? days - fraction : days + fraction;
  return true;
}

void DateTime::SetToNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  setToLocalTime(localtime_r(&now, &local));
}

void DateTime::setToLocalTime(const std::tm* local) {
  constexpr i32 kFirstYear = 1900;  // of the fields of std::tm
  const bool isRead =
      local != nullptr &&
      EncodeDateTime(local->tm_year + kFirstYear, local->tm_mon + 1, local->tm_mday, local->tm_hour,
                     local->tm_min, std::min(local->tm_sec, kSecondsPerMinute - 1), dayNumber);
  status = isRead ? kValid : kUnreadable;
  // Quirk that stays: the date that means "no date" is treated as a failed reading, even if the
  // clock really shows it: GetDate returns it for unusable values, so nothing could tell the two
  // apart.
  if (dateText() == "1000-01-01") {
    status = kUnreadable;
    dayNumber = 0;
  }
}

namespace {

struct Moment {
  std::chrono::year_month_day date{};
  i32 second = 0;  // of the day
};

// Rounds to the nearest second: a time that rounds up to midnight becomes the start of the next
// day, except on the last day of the calendar.
Moment momentOf(f64 dayNumber) {
  i32 day = static_cast<i32>(std::trunc(dayNumber));
  const f64 fraction = std::fabs(dayNumber - std::trunc(dayNumber));
  i32 second = static_cast<i32>(std::lround(fraction * kSecondsPerDay));
  if (second == kSecondsPerDay && day == kLastDay) {
    second -= 1;
  } else if (second == kSecondsPerDay) {
    day += 1;
    second = 0;
  }
  return {std::chrono::sys_days(std::chrono::days(day - kLibraryEpoch)), second};
}

std::string printed(const char* format, i32 first, i32 second, i32 third) {
  char text[40];  // room for any three integers
  std::snprintf(text, sizeof text, format, first, second, third);
  return text;
}

}  // namespace

bool DateTime::isUsable() const {
  return status == kValid && dayNumber > kFirstDay - 1 && dayNumber < kLastDay + 1;
}

void DateTime::GetDate(i32& month, i32& day, i32& year, MonthsFrom monthsFrom) const {
  month = 1;
  day = 1;
  year = 1000;
  if (isUsable()) {
    const std::chrono::year_month_day date = momentOf(dayNumber).date;
    const i32 january = monthsFrom == MonthsFrom::kZero ? 0 : 1;
    month = static_cast<i32>(static_cast<unsigned>(date.month())) - 1 + january;
    day = static_cast<i32>(static_cast<unsigned>(date.day()));
    year = static_cast<i32>(date.year());
  }
}

i32 DateTime::GetHour() const {
  return isUsable() ? momentOf(dayNumber).second / kSecondsPerHour : 0;
}

i32 DateTime::GetMinute() const {
  return isUsable() ? momentOf(dayNumber).second % kSecondsPerHour / kSecondsPerMinute : 0;
}

i32 DateTime::GetSecond() const {
  return isUsable() ? momentOf(dayNumber).second % kSecondsPerMinute : 0;
}

std::string DateTime::dateText() const {
  i32 month = 0;
  i32 day = 0;
  i32 year = 0;
  GetDate(month, day, year, MonthsFrom::kOne);
  return printed("%04d-%02d-%02d", year, month, day);
}

std::string DateTime::timeText() const {
  return printed("%02d:%02d:%02d", GetHour(), GetMinute(), GetSecond());
}

}  // namespace rvf
