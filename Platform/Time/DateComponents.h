#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "Platform/Time/GregorianCalendar.h"

namespace platform {

/// The value of a component that was never set.
inline constexpr std::int64_t kUndefinedComponent = std::numeric_limits<std::int64_t>::max();

/// The parts of a date and time, each set or undefined. In which zone they are meant is up to the user of the record.
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

  /// The components from year to second. An undefined one gets the calendar's first value: year 1, January, day 1,
  /// midnight. Only year 2026 and hour 8 set: 2026-01-01 08:00:00.
  [[nodiscard]] CivilTime civil() const;
  /// Sets the components from year to second, except the era. A year before 1 is counted backwards: year 0 (1 BC) is
  /// set as 1, year -1 as 2.
  void setCivil(const CivilTime& civil);

  /// One line for each component, for logs; an undefined one reads -1.
  [[nodiscard]] std::string componentsDescription() const;
  [[nodiscard]] std::string description() const;
};

}  // namespace platform
