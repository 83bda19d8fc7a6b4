#pragma once

#include <cstdint>

namespace platform {

/// What a wall clock and a calendar show, without a zone. Years are astronomical: year 0 is 1 BC.
struct CivilTime {
  std::int64_t year = 1;
  std::int64_t month = 1;
  std::int64_t day = 1;
  std::int64_t hour = 0;
  std::int64_t minute = 0;
  std::int64_t second = 0;

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// The Gregorian calendar, also used for dates before it was introduced, with 64-bit years: the standard library's end
/// at 32767, and a broken document may say 999999999.
class GregorianCalendar {
 public:
  /// Whether the calendar and a clock have such a time: not on 30 February, and not at 24:00.
  [[nodiscard]] static bool has(const CivilTime& civil) { return civilFromSeconds(secondsFromCivil(civil)) == civil; }
  /// Seconds from 1970-01-01T00:00:00 on the same clock. Components out of range roll over; times beyond about 12
  /// billion years are set to that limit.
  ///
  ///   secondsFromCivil({2026, 2, 30, 0, 0, 0})   // 2026-03-02 00:00:00
  ///   secondsFromCivil({2026, 5, 6, 24, 0, 0})   // 2026-05-07 00:00:00
  ///   secondsFromCivil({2026, 14, 1, 0, -1, 0})  // 2027-01-31 23:59:00
  [[nodiscard]] static std::int64_t secondsFromCivil(const CivilTime& civil);

  /// The inverse: the civil time these seconds after 1970-01-01T00:00:00, with all components in range.
  [[nodiscard]] static CivilTime civilFromSeconds(std::int64_t seconds);

  /// Weekday of the date at these civil seconds: 1 is Sunday, 7 Saturday.
  [[nodiscard]] static int weekday(std::int64_t civilSeconds);

  /// Seconds from midnight to these civil seconds: 0 to 86399.
  [[nodiscard]] static std::int64_t secondOfDay(std::int64_t civilSeconds);
};

}  // namespace platform
