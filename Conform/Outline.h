#pragma once

namespace conform {

class Copy;

/// Gives each task `WBS` and `OutlineNumber`, computed from the outline levels:
///
///   levels 0, 1, 2, 2, 1, 3      0, 1, 1.1, 1.2, 2, 2.1.1
///
/// The project's own task is 0. Where a level is skipped, the missing task counts as 1.
/// @throws platform::Exception "ConformException" for a level above 2000, whose numbers would fill the memory.
void correctOutline(Copy& copy);

}  // namespace conform
