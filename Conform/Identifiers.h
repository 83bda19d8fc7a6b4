#pragma once

namespace conform {

class Copy;

/// Gives tasks and resources a free number, and changes the links and assignments that refer to them, when their `UID`
/// is empty, not a number, too large, or a number that another one has ("007" and "7"). When a resource has the
/// placeholder's number, the placeholder gets another one. Of two calendars with one `UID`, the second is removed when
/// both have the same contents, and otherwise gets a free number.
void correctIdentifiers(Copy& copy);

}  // namespace conform
