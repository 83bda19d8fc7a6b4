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
/// When all calendars together have more than 100,000 exceptions, those further than ten years from the tasks are left
/// out, and in any case those past the first 1,000,000. Both are said.
void correctDays(Copy& copy);

}  // namespace conform
