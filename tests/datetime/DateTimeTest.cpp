#include "datetime/DateTime.h"

#include <gtest/gtest.h>

#include <ctime>
#include <limits>

namespace rvf {
namespace {

struct Parts {
  i32 year, month, day, hour, minute, second;
  bool operator==(const Parts&) const = default;
};

Parts partsOf(const DateTime& value) {
  Parts parts{};
  value.GetDate(parts.month, parts.day, parts.year, false);
  parts.hour = value.GetHour();
  parts.minute = value.GetMinute();
  parts.second = value.GetSecond();
  return parts;
}

bool encode(const Parts& p, f64& dayNumber) {
  return DateTime::EncodeDateTime(p.year, p.month, p.day, p.hour, p.minute, p.second, dayNumber);
}

TEST(DateTime, KnownDayNumbers) {
  struct Row {
    Parts parts;
    f64 dayNumber;
  };
  const Row rows[] = {
      {{1899, 12, 30, 0, 0, 0}, 0},
      {{1899, 12, 30, 18, 0, 0}, 0.75},
      {{1899, 12, 31, 6, 0, 0}, 1.25},
      {{1899, 12, 29, 6, 0, 0}, -1.25},  // the fraction counts away from the start
      {{1900, 1, 1, 0, 0, 0}, 2},
      {{1970, 1, 1, 0, 0, 0}, 25569},
      {{2000, 2, 29, 12, 0, 0}, 36585.5},
      {{2024, 2, 29, 0, 0, 0}, 45351},
      {{0, 1, 1, 0, 0, 0}, -693959},
      {{9999, 12, 31, 0, 0, 0}, 2958465},
  };
  for (const Row& row : rows) {
    f64 dayNumber = -1;
    ASSERT_TRUE(encode(row.parts, dayNumber)) << row.dayNumber;
    EXPECT_EQ(dayNumber, row.dayNumber);
    EXPECT_EQ(partsOf(DateTime(row.dayNumber)), row.parts) << row.dayNumber;
  }
}

TEST(DateTime, ValuesOutsideTheCalendarAreRefused) {
  const Parts refused[] = {
      {10000, 1, 1, 0, 0, 0}, {-1, 1, 1, 0, 0, 0},    {2024, 0, 1, 0, 0, 0},
      {2024, 13, 1, 0, 0, 0}, {2024, 1, 0, 0, 0, 0},  {2024, 1, 32, 0, 0, 0},
      {2024, 4, 31, 0, 0, 0}, {2024, 2, 30, 0, 0, 0}, {2023, 2, 29, 0, 0, 0},
      {1900, 2, 29, 0, 0, 0}, {2024, 1, 1, 24, 0, 0}, {2024, 1, 1, -1, 0, 0},
      {2024, 1, 1, 0, 60, 0}, {2024, 1, 1, 0, 0, 60},
  };
  for (const Parts& parts : refused) {
    f64 dayNumber = 7;
    EXPECT_FALSE(encode(parts, dayNumber)) << parts.year << '-' << parts.month << '-' << parts.day;
    EXPECT_EQ(dayNumber, 7);
  }
}

TEST(DateTime, EveryDayFollowsTheOneBeforeAndComesBack) {
  f64 expected = -693959;
  for (i32 year = 0; year <= 9999; ++year) {
    for (i32 month = 1; month <= 12; ++month) {
      f64 dayNumber = 0;
      for (i32 day = 1; encode({year, month, day, 0, 0, 0}, dayNumber); ++day) {
        ASSERT_EQ(dayNumber, expected) << year << '-' << month << '-' << day;
        expected += 1;
        if (day == 1 || day >= 28) {
          ASSERT_EQ(partsOf(DateTime(dayNumber)), (Parts{year, month, day, 0, 0, 0}));
        }
      }
    }
  }
  EXPECT_EQ(expected, 2958466);
}

TEST(DateTime, EverySecondComesBackOnBothSidesOfTheStart) {
  for (const i32 year : {0, 1, 1899, 2024, 9999}) {
    for (i32 second = 0; second < 86400; second += 7) {
      const Parts parts{year, 12, 29, second / 3600, second / 60 % 60, second % 60};
      f64 dayNumber = 0;
      ASSERT_TRUE(encode(parts, dayNumber));
      ASSERT_EQ(partsOf(DateTime(dayNumber)), parts);
    }
  }
}

TEST(DateTime, RoundsToTheNearestSecond) {
  EXPECT_EQ(partsOf(DateTime(1.9999999)), (Parts{1900, 1, 1, 0, 0, 0}));
  EXPECT_EQ(partsOf(DateTime(1.0 + 1.6 / 86400)), (Parts{1899, 12, 31, 0, 0, 2}));
}

TEST(DateTime, ValuesThatAreNotUsableGiveTheFirstDayOfTheYear1000) {
  constexpr f64 kInfinity = std::numeric_limits<f64>::infinity();
  for (const f64 day : {2958466.0, -693960.0, 1e300, -1e300, kInfinity, -kInfinity,
                        std::numeric_limits<f64>::quiet_NaN()}) {
    EXPECT_FALSE(DateTime(day).isUsable()) << day;
    EXPECT_EQ(partsOf(DateTime(day)), (Parts{1000, 1, 1, 0, 0, 0})) << day;
  }
  for (const i32 status : {DateTime::kUnreadable, 1, -1}) {
    DateTime value(36585.5);
    value.status = status;
    EXPECT_EQ(partsOf(value), (Parts{1000, 1, 1, 0, 0, 0}));
  }
}

TEST(DateTime, MonthFromZero) {
  i32 month = 0;
  i32 day = 0;
  i32 year = 0;
  DateTime(36585).GetDate(month, day, year, true);
  EXPECT_EQ(month, 1);
  EXPECT_EQ(day, 29);
  EXPECT_EQ(year, 2000);
}

TEST(DateTime, NowIsTheLocalTime) {
  const std::time_t before = std::time(nullptr);
  const DateTime now;
  const std::time_t after = std::time(nullptr);
  ASSERT_EQ(now.status, DateTime::kValid);
  const Parts parts = partsOf(now);
  std::tm local{};
  local.tm_year = parts.year - 1900;
  local.tm_mon = parts.month - 1;
  local.tm_mday = parts.day;
  local.tm_hour = parts.hour;
  local.tm_min = parts.minute;
  local.tm_sec = parts.second;
  local.tm_isdst = -1;
  const std::time_t read = std::mktime(&local);
  EXPECT_LE(before, read);
  EXPECT_LE(read, after);
}

}  // namespace
}  // namespace rvf
