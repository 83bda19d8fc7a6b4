#pragma once

namespace conform {

class Copy;

/// The exceptions of a calendar stand in order of their first day; Microsoft Project is reported to ignore others.
void correctExceptionDates(Copy& copy);

}  // namespace conform
