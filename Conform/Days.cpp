#include "Conform/Days.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Conform/CalendarDays.h"
#include "Conform/Copy.h"
#include "Conform/Markup.h"
#include "Conform/PlanHours.h"
#include "Conform/Schedule.h"
#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/XML/XMLText.h"

namespace conform {
namespace {

/// They take about a gigabyte in memory.
constexpr std::size_t kMostExceptions = 500'000;
constexpr std::int64_t kDaysAround = 3653;  ///< ten years

struct Calendar {
  pugi::xml_node element;
  std::size_t resource;
  CalendarDays days;
  std::vector<DayException> exceptions;
};

std::vector<Calendar> calendarsOf(const Copy& copy, PlanHours& hours) {
  std::vector<Calendar> calendars;
  for (const CalendarItem& item : copy.calendars) {
    const bool isBase = item.element.child("IsBaseCalendar").text().as_bool();
    const auto resource = static_cast<std::size_t>(item.source - copy.plan()->resources().data());
    const CalendarDays days(hours, resource, isBase ? std::nullopt : item.source->parent);
    calendars.push_back({item.element, resource, days, {}});
  }
  return calendars;
}

// Which exceptions.

/// From ten years before the tasks to ten years behind them.
DateRange daysAroundTasks(const Plan& plan) {
  DateRange range{lastKeptDay(), firstKeptDay()};
  for (const xml::Node task : plan.tasks()) {
    for (const xml::Query& query : {xml::Query("start-date"), xml::Query("end-date")}) {
      const auto date = wallClock(stringValueForXQuery(task, query).value_or(""));
      if (!date) continue;
      range.first = std::min(range.first, dayOf(*date) - kDaysAround);
      range.last = std::max(range.last, dayOf(*date) + kDaysAround);
    }
  }
  return range;
}

/// False when there are more than the file may have; the last calendars are without theirs then.
bool findExceptions(std::vector<Calendar>& calendars, DateRange range) {
  std::size_t room = kMostExceptions + 1;
  for (Calendar& calendar : calendars) {
    calendar.exceptions = calendar.days.exceptions(range, room);
    room -= calendar.exceptions.size();
  }
  return room > 0;
}

void findExceptions(std::vector<Calendar>& calendars, Copy& copy) {
  if (findExceptions(calendars, {firstKeptDay(), lastKeptDay()})) return;
  const DateRange range = daysAroundTasks(*copy.plan());
  copy.report.warn(
      fmt::format("exceptions of calendars before {} and after {} are left out: together there are more "
                  "than {}",
                  wallClockText(range.first * kSecondsPerDay).substr(0, 10),
                  wallClockText(range.last * kSecondsPerDay).substr(0, 10), kMostExceptions));
  if (findExceptions(calendars, range)) return;
  copy.report.warn("the last calendars are without exceptions, because those before have too many");
}

// Markup.

template <typename... Args>
void append(std::string& text, fmt::format_string<Args...> format, Args&&... args) {
  fmt::format_to(std::back_inserter(text), format, std::forward<Args>(args)...);
}

void appendDayWorking(std::string& text, const Hours& hours) {
  append(text, "<DayWorking>{}</DayWorking>", hours.empty() ? 0 : 1);
}

void appendWorkingTimes(std::string& text, const Hours& hours) {
  if (hours.empty()) return;
  text += "<WorkingTimes>";
  for (const Span& span : hours.spans()) {
    append(text, "<WorkingTime><FromTime>{}</FromTime><ToTime>{}</ToTime></WorkingTime>", timeOfDayText(span.from),
           timeOfDayText(span.to));
  }
  text += "</WorkingTimes>";
}

void appendTimePeriod(std::string& text, DateRange days) {
  append(text, "<TimePeriod><FromDate>{}</FromDate><ToDate>{}</ToDate></TimePeriod>",
         wallClockText(days.first * kSecondsPerDay), wallClockText((days.last + 1) * kSecondsPerDay - 1));
}

/// The days of the week, then an entry of type 0 for each exception.
std::string weekDays(const Calendar& calendar) {
  std::string text;
  for (int day = kSunday; day <= kSaturday; ++day) {
    if (!calendar.days.namesWeekDay(day)) continue;
    const Hours hours = CalendarDays::written(calendar.days.weekDay(day));
    append(text, "<WeekDay><DayType>{}</DayType>", day);
    appendDayWorking(text, hours);
    appendWorkingTimes(text, hours);
    text += "</WeekDay>";
  }
  for (const DayException& exception : calendar.exceptions) {
    text += "<WeekDay><DayType>0</DayType>";
    appendDayWorking(text, exception.hours);
    appendTimePeriod(text, exception.days);
    appendWorkingTimes(text, exception.hours);
    text += "</WeekDay>";
  }
  return text.empty() ? text : "<WeekDays>" + text + "</WeekDays>";
}

std::string exceptions(const Calendar& calendar, const PlanHours& hours) {
  std::string text;
  for (const DayException& exception : calendar.exceptions) {
    text += "<Exception><EnteredByOccurrences>0</EnteredByOccurrences>";
    appendTimePeriod(text, exception.days);
    append(text, "<Occurrences>{}</Occurrences><Name>{}</Name><Type>1</Type>",
           exception.days.last - exception.days.first + 1, xml::escapedText(hours.namesOf(exception.change)));
    appendDayWorking(text, exception.hours);
    appendWorkingTimes(text, exception.hours);
    text += "</Exception>";
  }
  return text.empty() ? text : "<Exceptions>" + text + "</Exceptions>";
}

// Writing.

/// Puts the markup of one element in the place of the child of its name. False when the child is like it already.
bool replaceChild(pugi::xml_node parent, const char* name, std::string_view markup) {
  const pugi::xml_node before = parent.child(name);
  appendMarkup(parent, markup);
  const pugi::xml_node after = markup.empty() ? pugi::xml_node() : parent.last_child();
  const bool changes = !isAlike(before, after);
  parent.remove_child(changes ? before : after);
  return changes;
}

void write(const Calendar& calendar, const PlanHours& hours, Report& report) {
  pugi::xml_node element = calendar.element;
  bool changed = replaceChild(element, "WeekDays", weekDays(calendar));
  changed |= replaceChild(element, "Exceptions", exceptions(calendar, hours));
  changed |= element.remove_child("WorkWeeks");
  if (changed) report.count("calendars whose days were set right");
}

void warn(const Calendar& calendar, PlanHours& hours, xml::Node resource, Report& report) {
  const std::string name = "resource " + resource.attributeText("id").value_or("");
  if (const std::size_t unsaid = hours.unsaid(calendar.resource); unsaid > 0) {
    report.warn(fmt::format("{}: hours that could not be said: {}", name, unsaid));
    report.count("hours that could not be said", unsaid);
  }
  if (hours.isCutOff(calendar.resource)) {
    report.warn(name + ": time off and overtime before the year 1 or after 9999 is left out");
  }
  bool isMerged = std::any_of(calendar.exceptions.begin(), calendar.exceptions.end(),
                              [](const DayException& exception) { return exception.isMerged; });
  for (int day = kSunday; day <= kSaturday; ++day) {
    const Hours& hoursOfDay = calendar.days.weekDay(day);
    isMerged |= calendar.days.namesWeekDay(day) && CalendarDays::written(hoursOfDay) != hoursOfDay;
  }
  if (isMerged) {
    report.warn(name + ": on days with more than five working times the smallest breaks became working time");
  }
}

}  // namespace

void correctDays(Copy& copy) {
  if (copy.plan() == nullptr) return;
  PlanHours hours(*copy.plan());
  std::vector<Calendar> calendars = calendarsOf(copy, hours);
  findExceptions(calendars, copy);
  for (const Calendar& calendar : calendars) {
    warn(calendar, hours, copy.plan()->resources()[calendar.resource].node, copy.report);
    write(calendar, hours, copy.report);
  }
}

}  // namespace conform
