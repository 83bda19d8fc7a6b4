#pragma once

namespace conform {

class Copy;

/// Writes the project's `MinutesPerDay`, `MinutesPerWeek`, `DefaultStartTime` and `DefaultFinishTime`, which readers
/// use to show durations in days, from the plan's own week. The length of the day is the most frequent one of its
/// working days, of equally frequent ones the longest; start and finish are those of the first such day, beginning on
/// Monday. Writes nothing for a week without work.
void correctProjectWeek(Copy& copy);

}  // namespace conform
