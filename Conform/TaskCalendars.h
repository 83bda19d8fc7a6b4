#pragma once

namespace conform {

class Copy;

/// Marks tasks without a calendar of their own (`CalendarUID` -1), so that they follow the calendars of their
/// resources.
void correctTaskCalendars(Copy& copy);

}  // namespace conform
