#include "datetime/DateTime.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace rvf {
namespace {

using Parts = std::array<i32, 6>;  // year, month, day, hour, minute, second

Parts partsOf(const DateTime& value) {
  Parts p{};
  value.GetDate(p[1], p[2], p[0], false);
  return {p[0], p[1], p[2], value.GetHour(), value.GetMinute(), value.GetSecond()};
}

/// The day number, or 0.25 where there is none.
f64 dayOf(const Parts& p) {
  f64 day = 0.25;
  const bool exists = DateTime::EncodeDateTime(p[0], p[1], p[2], p[3], p[4], p[5], day);
  EXPECT_EQ(exists, day != 0.25);
  return day;
}

TEST(DateTime, DayNumbers) {
  // Before its start the fraction counts away from it.
  const std::pair<Parts, f64> rows[] = {
      {{1899, 12, 30, 18}, 0.75},   {{1899, 12, 29, 6}, -1.25},
      {{2000, 2, 29, 12}, 36585.5}, {{2000, 3, 1, 0, 2, 1}, 36586 + 121 / 86400.0},
      {{1900, 3, 1}, 61},           {{0, 1, 1}, -693959},
      {{9999, 12, 31}, 2958465}};
  for (const auto& [parts, day] : rows) {
    EXPECT_EQ(dayOf(parts), day);
    EXPECT_EQ(partsOf(DateTime(day)), parts) << day;
  }
  EXPECT_EQ(partsOf(DateTime(2 - 1e-9)), (Parts{1900, 1, 1}));  // the time rounds up to midnight
}

TEST(DateTime, WhatIsOutsideTheCalendarHasNoDate) {
  for (const Parts& parts : {Parts{10000, 1, 1},
                             {-1, 1, 1},
                             {2024, 0, 1},
                             {2024, 13, 1},
                             {2024, 1, 0},
                             {2024, 4, 31},
                             {2024, 2, 30},
                             {1900, 2, 29},
                             {2024, 1, 1, 24},
                             {2024, 1, 1, 0, 60},
                             {2024, 1, 1, -1}}) {
    EXPECT_EQ(dayOf(parts), 0.25) << ::testing::PrintToString(parts);
  }
  DateTime unreadable(36585.5);
  unreadable.status = DateTime::kUnreadable;
  for (const DateTime& value : {unreadable, DateTime(2958466.0), DateTime(-693960.0),
                                DateTime(1e300), DateTime(std::numeric_limits<f64>::quiet_NaN())}) {
    EXPECT_EQ(partsOf(value), (Parts{1000, 1, 1})) << value.dayNumber;
  }
}

}  // namespace
}  // namespace rvf
