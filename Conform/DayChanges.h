#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Conform/Hours.h"

namespace conform {

/// What becomes of a day's hours: first some are taken away, then others are given. Changes that follow each other make
/// one of this kind again.
struct DayChange {
  Hours takes;
  Hours gives;
  std::vector<std::size_t> sources;  ///< numbers of the sets of events it comes from, in rising order, each once

  [[nodiscard]] Hours appliedTo(Hours hours) const;
  /// This change, and then the other one.
  [[nodiscard]] DayChange followedBy(const DayChange& next) const;
  void addSources(const std::vector<std::size_t>& others);
};

/// A change that holds on every day from the first to the last.
struct ChangedDays {
  std::int64_t first = 0;
  std::int64_t last = 0;
  DayChange change;
};

/// In order of time, none overlapping the next; on the days between nothing changes.
using DayChanges = std::vector<ChangedDays>;

/// The changes above and then, where there are some, the own ones. Stretches begin and end wherever one of either list
/// does.
[[nodiscard]] DayChanges composed(const DayChanges& above, const DayChanges& own);

/// The change of the day; null when there is none.
[[nodiscard]] const DayChange* changeOn(const DayChanges& changes, std::int64_t day);

}  // namespace conform
