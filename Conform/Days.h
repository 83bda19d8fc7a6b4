#pragma once

namespace conform {

class Copy;

/// Makes the calendars give exactly the hours of the plan on every date (PlanHours.h has the rule). The exact file does
/// not: it joins two holidays with equal hours to one stretch that includes the days between them, turns hours off into
/// whole days off, and lets overtime replace the hours of its day.
///
/// A calendar gets the week days that the resource's own schedule defines; a base calendar gets all seven. It gets
/// exceptions, in order and without overlaps, only for dates on which the week and the base calendar would give wrong
/// hours. Successive days with equal hours are one exception, named after the sets of events that hold on them. Each
/// exception is also written as a `WeekDay` of `DayType` 0, for older readers. There are no `WorkWeeks`. On a day with
/// more than five working times, the shortest breaks are closed.
///
/// When all calendars together have more than 100,000 exceptions, those more than ten years from the tasks are left
/// out; in any case, those after the first 1,000,000. A warning says so.
void correctDays(Copy& copy);

}  // namespace conform
