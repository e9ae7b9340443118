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

}  // namespace
}  // namespace rvf
