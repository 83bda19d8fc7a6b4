#pragma once

namespace conform {

class Copy;

/// Tasks and resources whose `UID` is empty, no number, too large, or a number that another one has as well ("007"
/// beside "7") get a number that is free, also where links and assignments name them. The placeholder resource gives
/// its number to one that has it as well. Of calendars with one `UID` the second is left out when it says the same, and
/// gets a free number otherwise.
void correctIdentifiers(Copy& copy);

}  // namespace conform
