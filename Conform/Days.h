#pragma once

namespace conform {

class Copy;

/// The calendars give exactly the hours of the plan on every date (PlanHours.h has the rule). The exact file makes one
/// closed stretch of two holidays of equal hours, whole days off of hours off, and hours of the day of overtime.
///
/// Week days: those that the resource's own schedule names; all seven in a base calendar. Exceptions: only dates on
/// which the hours are not those that week and base calendar give, in order, none overlapping; days in a row with equal
/// hours are one exception, named after the sets of events that hold on them. Each is also a `WeekDay` of `DayType` 0,
/// for older readers. No `WorkWeeks`. A day with more than five working times has its smallest breaks closed.
///
/// All calendars together have at most 500,000 exceptions. A plan that needs more keeps those from ten years before its
/// tasks to ten years behind them, and of these the first.
void correctDays(Copy& copy);

}  // namespace conform
