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

/// Days in a row with equal hours that a calendar has to name, because its week and its base give others.
struct DayException {
  DateRange days;
  DayChange change;  ///< says where the hours come from; merged over the days
  Hours hours;       ///< as written, in at most five spans
  bool isMerged = false;
};

/// What one calendar of the file has to say so that a reader gets the hours of the plan. A reader takes, for a date,
/// an exception of the calendar; else one of its base; else the calendar's own weekday; else the base's.
class CalendarDays {
 public:
  /// @param resource whose calendar it is. @param base the group whose calendar the calendar is based on; none for a
  /// base calendar, which has to say everything.
  CalendarDays(PlanHours& hours, std::size_t resource, std::optional<std::size_t> base);

  /// Whether the calendar says something of the weekday.
  [[nodiscard]] bool namesWeekDay(int weekday) const;
  /// The weekday's hours in the plan.
  [[nodiscard]] const Hours& weekDay(int weekday) const;
  /// In order of date, none overlapping and none touching one of equal hours; only dates on which the hours differ.
  /// @param most the list ends with so many, even when there are more.
  [[nodiscard]] std::vector<DayException> exceptions(DateRange range, std::size_t most) const;

  /// The hours as the format takes them: in at most five spans.
  [[nodiscard]] static Hours written(const Hours& hours);

 private:
  using Week = std::array<std::optional<Hours>, 8>;  ///< by weekday; the first place is no day

  [[nodiscard]] Week differingHours(DateRange days, const DayChange& change) const;
  [[nodiscard]] Hours givenHours(int weekday, const DayChange* baseChange) const;

  PlanHours& hours_;
  std::size_t resource_;
  std::optional<std::size_t> base_;
};

}  // namespace conform
