#include "datetime/DateTime.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace rvf {

namespace {

constexpr i32 kSecondsPerDay = 86400;
constexpr i32 kSecondsPerHour = 3600;
constexpr i32 kSecondsPerMinute = 60;
constexpr i32 kHighestYear = 9999;
// Days from the day before 1 January of year 1 to 30 December 1899.
constexpr i32 kEpochDays = 693959;
// From 30 December 1899 to 1 January 1970, where the calendar of the library starts.
constexpr i32 kLibraryEpoch = 25569;
// The days of the years 0 to 9999.
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
  const bool isRead =
      localtime_r(&now, &local) != nullptr &&
      EncodeDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                     local.tm_min, std::min(local.tm_sec, 59), dayNumber);
  i32 month = 0;
  i32 day = 0;
  i32 year = 0;
  status = isRead ? kValid : kUnreadable;
  GetDate(month, day, year, false);
  // The date that stands for none counts as a failed reading too.
  if (year == 1000 && month == 1 && day == 1) {
    status = kUnreadable;
    dayNumber = 0;
  }
}

namespace {

// 0 to 86399, and 86400 for a time of day that rounds up to midnight.
i32 secondOfDay(f64 dayNumber) {
  const f64 fraction = std::fabs(dayNumber - std::trunc(dayNumber));
  return static_cast<i32>(std::lround(fraction * kSecondsPerDay));
}

std::chrono::year_month_day calendarDay(f64 dayNumber) {
  const i32 carried = secondOfDay(dayNumber) == kSecondsPerDay ? 1 : 0;
  const i32 days = std::min(static_cast<i32>(std::trunc(dayNumber)) + carried, kLastDay);
  return std::chrono::sys_days(std::chrono::days(days - kLibraryEpoch));
}

}  // namespace

bool DateTime::isUsable() const {
  return status == kValid && dayNumber > kFirstDay - 1 && dayNumber < kLastDay + 1;
}

void DateTime::GetDate(i32& month, i32& day, i32& year, bool monthFromZero) const {
  month = 1;
  day = 1;
  year = 1000;
  if (isUsable()) {
    const std::chrono::year_month_day date = calendarDay(dayNumber);
    month = static_cast<i32>(static_cast<unsigned>(date.month())) - (monthFromZero ? 1 : 0);
    day = static_cast<i32>(static_cast<unsigned>(date.day()));
    year = static_cast<i32>(date.year());
  }
}

i32 DateTime::GetHour() const {
  return isUsable() ? secondOfDay(dayNumber) % kSecondsPerDay / kSecondsPerHour : 0;
}

i32 DateTime::GetMinute() const {
  return isUsable() ? secondOfDay(dayNumber) % kSecondsPerHour / kSecondsPerMinute : 0;
}

i32 DateTime::GetSecond() const {
  return isUsable() ? secondOfDay(dayNumber) % kSecondsPerMinute : 0;
}

}  // namespace rvf
