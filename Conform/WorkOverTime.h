#pragma once

namespace conform {

class Copy;

/// Writes the work of each day into the `TimephasedData` of split tasks and materials. The exact file gives every day
/// of a piece the work of the whole piece, and ignores whose hours count.
///
/// The work of the assignment is shared among the pieces of the task by their efforts, and within a piece by the
/// working hours of its days: those of the assigned resource, of the group, or of the plan. Shares are whole seconds
/// whose sum is the work. The earliest of them, as much as is done, are of `Type` 2 (actual), the others of `Type` 1
/// (remaining); the day between them has both. Start and Finish are the first and last working moment of the day in the
/// piece; a piece without any working hours is one entry from its start to its end. Days without work have no entry.
void correctWorkOverTime(Copy& copy);

}  // namespace conform
