#include "Conform/TaskCalendars.h"

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Facts.h"

namespace conform {

void correctTaskCalendars(Copy& copy) {
  std::size_t changed = 0;
  for (const Item& task : copy.tasks) {
    const auto [calendar, ignores] = childrenOf(task.element, "CalendarUID", "IgnoreResourceCalendar");
    if (!isBlank(textOf(calendar)) && textOf(calendar) != kNoCalendar) continue;
    const bool isNew = setText(task.element, calendar, "CalendarUID", kNoCalendar);
    if (setText(task.element, ignores, "IgnoreResourceCalendar", "0") || isNew) ++changed;
  }
  copy.report.count("tasks without a calendar of their own", changed);
}

}  // namespace conform
