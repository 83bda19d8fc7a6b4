#pragma once

namespace conform {

class Copy;

/// Writes the progress of tasks and assignments. With the bundle, it is computed from the exact ratio (Completion): the
/// percentage rounded to the nearest number, an actual start when work has begun, an actual finish when it is done, and
/// the work and duration that are done and that remain, which add up to the whole. Without the bundle, only a task that
/// is 100 percent done and has no figures for work done gets its actual dates, and so do its assignments.
void correctProgress(Copy& copy);

}  // namespace conform
