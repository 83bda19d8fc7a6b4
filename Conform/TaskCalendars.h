#pragma once

namespace conform {

class Copy;

/// A task without a calendar of its own says so (`CalendarUID` -1) and does not ignore those of its resources.
void correctTaskCalendars(Copy& copy);

}  // namespace conform
