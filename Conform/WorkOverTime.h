#pragma once

namespace conform {

class Copy;

/// The `TimephasedData` of split tasks and materials holds the work of each day. The exact file gives every day of a
/// piece the work of the whole piece, and leaves out whose hours these are.
///
/// The work of the assignment is shared among the pieces of the task by their efforts, and within a piece by the
/// working hours of its days: those of the assigned resource, of the group, or of the plan. Shares are whole seconds
/// whose sum is the work. The first of them in time, as much as is done, are of `Type` 2, the others of `Type` 1; the
/// day on which the one becomes the other has both. Start and Finish are the first and last working moment of the day
/// in the piece; a piece without any working hours is one entry from its start to its end. Days without work have none.
void correctWorkOverTime(Copy& copy);

}  // namespace conform
