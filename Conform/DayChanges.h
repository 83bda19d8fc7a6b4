#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Conform/Hours.h"

namespace conform {

/// A change of a day's hours: first `takes` is removed, then `gives` is added. Several changes in a row can be combined
/// into one:
///
///   a day of 08:00-16:00, taking 12:00-24:00, then giving 18:00-20:00    08:00-12:00, 18:00-20:00
struct DayChange {
  Hours takes;
  Hours gives;
  std::vector<std::size_t> sources;  ///< numbers of the sets of events it comes from, in rising order, each once

  [[nodiscard]] Hours appliedTo(Hours hours) const;
  /// The change that has the effect of this one followed by the next.
  [[nodiscard]] DayChange followedBy(const DayChange& next) const;
  void addSources(const std::vector<std::size_t>& others);
};

/// A change that holds on every day from the first to the last.
struct ChangedDays {
  std::int64_t first = 0;
  std::int64_t last = 0;
  DayChange change;
};

/// Stretches in order of time that do not overlap. On days between them nothing changes.
using DayChanges = std::vector<ChangedDays>;

/// The changes of the level above, followed on each day by the own ones. A stretch begins or ends wherever one in
/// either list does.
[[nodiscard]] DayChanges composed(const DayChanges& above, const DayChanges& own);

/// The change of the day; null when there is none.
[[nodiscard]] const DayChange* changeOn(const DayChanges& changes, std::int64_t day);

}  // namespace conform
