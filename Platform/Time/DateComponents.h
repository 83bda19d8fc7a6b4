#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "Platform/Time/GregorianCalendar.h"

namespace platform {

/// The value of a component that was never set.
inline constexpr std::int64_t kUndefinedComponent = std::numeric_limits<std::int64_t>::max();

/// The parts of a date and time, each set or undefined, on a clock that the record does not name.
struct DateComponents {
  std::int64_t era = kUndefinedComponent;  ///< 0 before the year 1, 1 since then
  std::int64_t year = kUndefinedComponent;
  std::int64_t month = kUndefinedComponent;
  std::int64_t day = kUndefinedComponent;
  std::int64_t hour = kUndefinedComponent;
  std::int64_t minute = kUndefinedComponent;
  std::int64_t second = kUndefinedComponent;
  std::int64_t weekOfMonth = kUndefinedComponent;
  std::int64_t weekOfYear = kUndefinedComponent;
  std::int64_t weekday = kUndefinedComponent;
  std::int64_t weekdayOrdinal = kUndefinedComponent;
  std::int64_t quarter = kUndefinedComponent;

  /// Year to second as civil time; an undefined component counts as the calendar's first (year 1, January, day 1,
  /// midnight).
  [[nodiscard]] CivilTime civil() const;
  /// Takes over year to second; a year before 1 is counted backwards, as calendars print it.
  void setCivil(const CivilTime& civil);

  /// One line a component, for logs; undefined ones read -1.
  [[nodiscard]] std::string componentsDescription() const;
  [[nodiscard]] std::string description() const;
};

}  // namespace platform
