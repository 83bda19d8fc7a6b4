#pragma once

namespace conform {

class Copy;

/// Each task has `WBS` and `OutlineNumber`, such as 2.1.3, worked out from the outline levels. Where a level is
/// skipped, the task that is missing counts as 1. The project's own task is 0.
/// @throws platform::Exception "ConformException" for a level beyond 2000, of which the numbers would fill the memory.
void correctOutline(Copy& copy);

}  // namespace conform
