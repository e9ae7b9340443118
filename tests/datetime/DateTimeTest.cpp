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

TEST(DateTime, DaysOfTheCalendarAndNoOthers) {
  constexpr f64 kNone = 0.25;
  const std::pair<Parts, f64> rows[] = {
      {{1899, 12, 30, 18}, 0.75},  {{1899, 12, 29, 6}, -1.25},  // away from the start
      {{1900, 3, 1}, 61},          {{2000, 2, 29, 12}, 36585.5},
      {{0, 1, 1}, -693959},        {{2000, 3, 1, 0, 2, 1}, 36586 + 121 / 86400.0},
      {{9999, 12, 31}, 2958465},   {{10000, 1, 1}, kNone},
      {{2024, 0, 1}, kNone},       {{2024, 13, 1}, kNone},
      {{2024, 1, 0}, kNone},       {{2024, 4, 31}, kNone},
      {{2024, 2, 30}, kNone},      {{1900, 2, 29}, kNone},
      {{2024, 1, 1, 24}, kNone},   {{2024, 1, 1, -1}, kNone},
      {{2024, 1, 1, 0, 60}, kNone}};
  for (const auto& [p, expected] : rows) {
    f64 day = kNone;
    const bool exists = DateTime::EncodeDateTime(p[0], p[1], p[2], p[3], p[4], p[5], day);
    EXPECT_TRUE(day == expected && exists == (day != kNone)) << ::testing::PrintToString(p);
    EXPECT_TRUE(!exists || partsOf(DateTime(day)) == p) << day;
  }
  EXPECT_EQ(partsOf(DateTime(2 - 1e-9)), (Parts{1900, 1, 1}));  // the time rounds up to midnight
  DateTime unreadable(36585.5);
  unreadable.status = DateTime::kUnreadable;
  for (const DateTime& value : {unreadable, DateTime(2958466.0), DateTime(-693960.0),
                                DateTime(std::numeric_limits<f64>::quiet_NaN())}) {
    EXPECT_EQ(partsOf(value), (Parts{1000, 1, 1})) << value.dayNumber;
  }
}

}  // namespace
}  // namespace rvf
