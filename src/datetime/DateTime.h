#pragma once

#include "base/Integers.h"

namespace rvf {

/// A date and time as a day count, in local time. The count starts at 30 December 1899, the time of
/// day is the fraction. Before the start the fraction still counts away from it: -1.25 is 29
/// December 1899, 06:00.
class DateTime {
 public:
  static constexpr i32 kValid = 0;
  static constexpr i32 kUnreadable = 2;  // what a failed reading of the clock leaves

  /// The current local time.
  DateTime() { SetToNow(); }
  explicit DateTime(f64 day) : dayNumber(day) {}

  void SetToNow();

  /// Returns false, and leaves `dayNumber`, for a value outside the calendar; years go from 0 to
  /// 9999.
  [[nodiscard]] static bool EncodeDateTime(i32 year, i32 month, i32 day, i32 hour, i32 minute,
                                           i32 second, f64& dayNumber);

  /// Whether there is a date to be had: the status is kValid and the year is from 0 to 9999.
  [[nodiscard]] bool isUsable() const;
  /// January is month 0 with `monthFromZero`, else 1. A value that is not usable gives month 1, day
  /// 1, year 1000 either way.
  void GetDate(i32& month, i32& day, i32& year, bool monthFromZero) const;
  /// Parts of the time of day, to the nearest second; 0 for a value that is not usable.
  [[nodiscard]] i32 GetHour() const;
  [[nodiscard]] i32 GetMinute() const;
  [[nodiscard]] i32 GetSecond() const;

  f64 dayNumber = 0;
  i32 status = kValid;  // anything else: the value holds no usable time
};

}  // namespace rvf
