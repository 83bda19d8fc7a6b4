#pragma once

namespace conform {

class Copy;

/// Sorts the exceptions of a calendar by their first day. Microsoft Project is reported to ignore those that are out of
/// order.
void correctExceptionDates(Copy& copy);

}  // namespace conform
