#pragma once

namespace conform {

class Copy;

/// `MinutesPerDay`, `MinutesPerWeek`, `DefaultStartTime` and `DefaultFinishTime` of the project are those of the plan's
/// own week, by which readers show durations in days. The day is the most frequent length of a working day, of equally
/// frequent ones the longer; start and finish are those of the first day of that length from Monday on. A week without
/// any work leaves them out.
void correctProjectWeek(Copy& copy);

}  // namespace conform
