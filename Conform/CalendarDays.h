#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Conform/DayChanges.h"
#include "Conform/Hours.h"
#include "Conform/PlanHours.h"

namespace conform {

/// Days from the first to the last, counted from 1970-01-01.
struct DateRange {
  std::int64_t first = 0;
  std::int64_t last = 0;
};

/// Successive days with equal hours for which a calendar needs an exception, because its week and its base would give
/// other hours.
struct DayException {
  DateRange days;
  DayChange change;  ///< what changed the hours; merged over the days
  Hours hours;       ///< as written, in at most five spans
  bool isMerged = false;
};

/// What one calendar of the file must contain so that a reader finds the hours of the plan. For a date, a reader uses
/// the first of these that exists: an exception of the calendar, one of its base, the calendar's own weekday, the
/// base's weekday.
class CalendarDays {
 public:
  /// @param resource the owner of the calendar.
  /// @param base the group whose calendar is its base; none for a base calendar, which must define everything itself.
  CalendarDays(PlanHours& hours, std::size_t resource, std::optional<std::size_t> base);

  /// Whether the calendar defines the weekday.
  [[nodiscard]] bool namesWeekDay(int weekday) const;
  /// The weekday's hours in the plan.
  [[nodiscard]] const Hours& weekDay(int weekday) const;
  /// The exceptions in order of date, only for dates on which the hours differ. They do not overlap, and successive
  /// ones have different hours.
  /// @param most the list is cut off after this many.
  [[nodiscard]] std::vector<DayException> exceptions(DateRange range, std::size_t most) const;

  /// The hours as the format can hold them: in at most five spans, see Hours::inAtMost().
  [[nodiscard]] static Hours written(const Hours& hours);

 private:
  using Week = std::array<std::optional<Hours>, 8>;  ///< indexed by weekday, 1 to 7; the first element is unused

  [[nodiscard]] Week differingHours(DateRange days, const DayChange& change) const;
  [[nodiscard]] Hours givenHours(int weekday, const DayChange* baseChange) const;

  PlanHours& hours_;
  std::size_t resource_;
  std::optional<std::size_t> base_;
};

}  // namespace conform
