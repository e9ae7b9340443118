#include "datetime/DateTime.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <limits>

namespace rvf {
namespace {

using Parts = std::array<i32, 6>;  // year, month, day, hour, minute, second
using Calendar = std::chrono::year_month_day;
constexpr std::chrono::sys_days kDayZero = Calendar(std::chrono::year(1899) / 12 / 30);

Parts partsOf(const DateTime& value) {
  Parts p{};
  value.GetDate(p[1], p[2], p[0], MonthsFrom::kOne);
  return {p[0], p[1], p[2], value.GetHour(), value.GetMinute(), value.GetSecond()};
}

std::string textOf(const DateTime& value) { return value.dateText() + " " + value.timeText(); }

// Each day at a different time, and the nonexistent dates between them.
TEST(DateTime, EveryDayOfTheCalendarAndNoOther) {
  f64 dayNumber = 0;
  i32 time = 0;
  for (const auto& [first, last] : {std::pair{-1, 9}, {1880, 2110}, {9990, 10000}}) {
    for (i32 year = first; year <= last; ++year) {
      for (i32 index = 0; index < 14 * 33; ++index) {
        time = (time + 12345) % 86400;
        const Parts p = {year, index / 33, index % 33, time / 3600, time / 60 % 60, time % 60};
        const Calendar date = std::chrono::year(year) / p[1] / p[2];
        const bool exists = date.ok() && year >= 0 && year <= 9999;
        ASSERT_EQ(DateTime::EncodeDateTime(p[0], p[1], p[2], p[3], p[4], p[5], dayNumber), exists);
        if (!exists) continue;
        const auto days = (std::chrono::sys_days(date) - kDayZero).count();
        ASSERT_EQ(dayNumber, static_cast<f64>(days) + (days < 0 ? -time : time) / 86400.0);
        ASSERT_EQ(partsOf(DateTime(dayNumber)), p);
      }
    }
  }
}

TEST(DateTime, TimesOutsideTheDayAreRefused) {
  for (const auto& [hour, minute, second] :
       {std::array{24, 0, 0}, {-1, 0, 0}, {0, 60, 0}, {0, -1, 0}, {0, 0, 60}, {0, 0, -1}}) {
    f64 day = 0.25;
    EXPECT_FALSE(DateTime::EncodeDateTime(2024, 2, 29, hour, minute, second, day));
    EXPECT_EQ(day, 0.25);
  }
}

TEST(DateTime, TextsAndValuesThatAreNoDates) {
  constexpr f64 kNoNumber = std::numeric_limits<f64>::quiet_NaN();
  const std::pair<f64, std::string> rows[] = {
      {0, "1899-12-30 00:00:00"},
      {-1.25, "1899-12-29 06:00:00"},
      {45351.5 + 61 / 86400.0, "2024-02-29 12:01:01"},
      {2 - 1e-9, "1900-01-01 00:00:00"},  // rounds up to midnight
      {-1 - 0.9999999, "1899-12-30 00:00:00"},
      {2958464.9999999, "9999-12-31 00:00:00"},
      {2958465.9999999, "9999-12-31 23:59:59"},  // no day follows
      {2958466, "1000-01-01 00:00:00"},
      {-693959, "0000-01-01 00:00:00"},
      {-693959.5, "0000-01-01 12:00:00"},
      {-693960, "1000-01-01 00:00:00"},
      {kNoNumber, "1000-01-01 00:00:00"},
  };
  for (const auto& [dayNumber, text] : rows) EXPECT_EQ(textOf(DateTime(dayNumber)), text);
  const auto monthFromZero = [](const DateTime& value) {
    i32 month = 0, day = 0, year = 0;
    value.GetDate(month, day, year, MonthsFrom::kZero);
    return month;
  };
  EXPECT_EQ(monthFromZero(DateTime(45366)), 2);
  EXPECT_EQ(monthFromZero(DateTime(kNoNumber)), 1);
}

TEST(DateTime, LocalTime) {
  const auto stored = [](const std::tm& local) {
    DateTime value(5);
    value.setToLocalTime(&local);
    return textOf(value) + (value.status == DateTime::kValid ? "" : " unreadable");
  };
  const auto fields = [](int year, int month, int day, int hour, int minute, int second) {
    std::tm local{};
    local.tm_year = year - 1900, local.tm_mon = month - 1, local.tm_mday = day;
    local.tm_hour = hour, local.tm_min = minute, local.tm_sec = second;
    return local;
  };
  EXPECT_EQ(stored(fields(2026, 7, 31, 13, 14, 15)), "2026-07-31 13:14:15");
  EXPECT_EQ(stored(fields(2016, 12, 31, 23, 59, 60)), "2016-12-31 23:59:59");
  const std::string none = "1000-01-01 00:00:00 unreadable";
  EXPECT_EQ(stored(fields(1000, 1, 1, 5, 5, 5)), none);
  EXPECT_EQ(stored(fields(10000, 1, 1, 0, 0, 0)), none);
  DateTime unread(5);
  unread.setToLocalTime(nullptr);
  EXPECT_EQ(std::pair(unread.status, unread.dayNumber), std::pair(DateTime::kUnreadable, 0.0));

  // The time now, give or take the seconds between the two readings of the clock.
  const std::time_t now = std::time(nullptr);
  DateTime reference;
  reference.setToLocalTime(std::localtime(&now));
  EXPECT_NEAR(DateTime().dayNumber, reference.dayNumber, 60 / 86400.0);
}

}  // namespace
}  // namespace rvf
