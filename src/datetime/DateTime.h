#pragma once

#include <ctime>
#include <string>

#include "base/Integers.h"

namespace rvf {

/// The number that GetDate returns for January.
enum class MonthsFrom : i32 { kOne, kZero };

/// A date and time as a day count, in local time. Day 0 is 30 December 1899; the fraction is the
/// time of day. The fraction counts by its absolute value: -1.25 is 29 December 1899, 06:00.
class DateTime {
 public:
  static constexpr i32 kValid = 0;
  /// The clock could not be read.
  static constexpr i32 kUnreadable = 2;

  /// The current local time.
  DateTime() { SetToNow(); }
  explicit DateTime(f64 day) : dayNumber(day) {}

  void SetToNow();
  /// Sets the value as SetToNow does, from a given local time. Null, a date outside the calendar
  /// and 1 January 1000 give day 0 and kUnreadable; a leap second becomes the second before it.
  void setToLocalTime(const std::tm* local);

  /// Returns false and leaves `dayNumber` alone for a date or time that does not exist. Years run
  /// from 0 to 9999.
  [[nodiscard]] static bool EncodeDateTime(i32 year, i32 month, i32 day, i32 hour, i32 minute,
                                           i32 second, f64& dayNumber);

  /// Whether the value is a date: the status is kValid and the year is between 0 and 9999.
  [[nodiscard]] bool isUsable() const;
  /// An unusable value gives month 1, day 1, year 1000, whatever `monthsFrom` is.
  void GetDate(i32& month, i32& day, i32& year, MonthsFrom monthsFrom) const;
  /// The time of day to the nearest second; 0 for an unusable value.
  [[nodiscard]] i32 GetHour() const;
  [[nodiscard]] i32 GetMinute() const;
  [[nodiscard]] i32 GetSecond() const;

  /// The date as "2024-02-29" and the time as "06:30:00". The banner of a run has its own format.
  /// Part of the interface; a run does not call them.
  [[nodiscard]] std::string dateText() const;
  [[nodiscard]] std::string timeText() const;

  f64 dayNumber = 0;
  /// Any value but kValid means that there is no usable time.
  i32 status = kValid;
};

}  // namespace rvf
