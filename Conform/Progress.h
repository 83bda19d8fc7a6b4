#pragma once

namespace conform {

class Copy;

/// What is done of tasks and assignments. With the bundle it follows from the exact ratio (Completion): percent rounded
/// to the nearest, an actual start for what has begun, an actual finish for what is done, and work and duration parted
/// into what is done and what remains so that both sum to the whole to the second. Without the bundle a task that is
/// 100 percent done, and does not say how much work is, gets its actual dates, and so do its assignments.
void correctProgress(Copy& copy);

}  // namespace conform
