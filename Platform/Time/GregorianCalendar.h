#pragma once

#include <cstdint>

namespace platform {

/// What a wall clock and a calendar show, without any zone. Years are astronomical: 0 is 1 BC.
struct CivilTime {
  std::int64_t year = 1;
  std::int64_t month = 1;
  std::int64_t day = 1;
  std::int64_t hour = 0;
  std::int64_t minute = 0;
  std::int64_t second = 0;

  friend bool operator==(const CivilTime&, const CivilTime&) = default;
};

/// The Gregorian calendar, extended without a break into the past, in 64-bit years (the standard library's
/// end at 32767, and a broken document may say 999999999).
class GregorianCalendar {
 public:
  /// Seconds from 1970-01-01T00:00:00 on the same clock. Components out of range roll over, as on a lenient
  /// calendar: 24:00 is the next midnight, 30 February the first or second of March. Times beyond about
  /// 12 thousand million years either way are held at that limit.
  [[nodiscard]] static std::int64_t secondsFromCivil(const CivilTime& civil);

  /// The inverse: the civil time of seconds from 1970-01-01T00:00:00, all components in range.
  [[nodiscard]] static CivilTime civilFromSeconds(std::int64_t seconds);

  /// Weekday of the day that holds these civil seconds: 1 Sunday to 7 Saturday.
  [[nodiscard]] static int weekday(std::int64_t civilSeconds);

  /// Seconds from midnight to these civil seconds: 0 to 86399.
  [[nodiscard]] static std::int64_t secondOfDay(std::int64_t civilSeconds);
};

}  // namespace platform
