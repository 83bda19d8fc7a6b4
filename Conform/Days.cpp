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
#include "Conform/Labels.h"
#include "Conform/Markup.h"
#include "Conform/PlanHours.h"
#include "Conform/Schedule.h"
#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLText.h"

using platform::kSecondsPerDay;

namespace conform {
namespace {

/// This many take about three gigabytes of memory.
constexpr std::size_t kMostExceptions = 1'000'000;
/// If there are more, those far from the tasks are left out: they come from dates that are centuries off.
constexpr std::size_t kManyExceptions = 100'000;
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

/// The dates from ten years before the first task to ten years after the last.
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

/// Gives the calendars their exceptions and returns how many there are. When there are too many, the last calendars get
/// none.
std::size_t findExceptions(std::vector<Calendar>& calendars, DateRange range) {
  std::size_t found = 0;
  for (Calendar& calendar : calendars) {
    calendar.exceptions = calendar.days.exceptions(range, kMostExceptions - found);
    found += calendar.exceptions.size();
  }
  return found;
}

void findExceptions(std::vector<Calendar>& calendars, Copy& copy) {
  const std::size_t all = findExceptions(calendars, {firstKeptDay(), lastKeptDay()});
  if (all <= kManyExceptions) return;
  const DateRange range = daysAroundTasks(*copy.plan());
  const std::size_t near = findExceptions(calendars, range);
  if (near < all) {
    copy.report.warn(
        fmt::format("the calendars have too many exceptions: those before {:.10} and after {:.10} are "
                    "left out",
                    wallClockText(range.first * kSecondsPerDay), wallClockText(range.last * kSecondsPerDay)));
  }
  if (near == kMostExceptions) copy.report.warn("the calendars have too many exceptions: the last ones are left out");
}

// Markup.

template <typename... Args>
void append(std::string& text, fmt::format_string<Args...> format, Args&&... args) {
  fmt::format_to(std::back_inserter(text), format, std::forward<Args>(args)...);
}

std::string dayWorking(const Hours& hours) {
  return hours.empty() ? "<DayWorking>0</DayWorking>" : "<DayWorking>1</DayWorking>";
}

std::string workingTimes(const Hours& hours) {
  std::string text;
  if (hours.empty()) return text;
  text += "<WorkingTimes>";
  for (const Span& span : hours.spans()) {
    append(text, "<WorkingTime><FromTime>{}</FromTime><ToTime>{}</ToTime></WorkingTime>", timeOfDayText(span.from),
           timeOfDayText(span.to));
  }
  return text + "</WorkingTimes>";
}

std::string timePeriod(DateRange days) {
  return fmt::format("<TimePeriod><FromDate>{}</FromDate><ToDate>{}</ToDate></TimePeriod>",
                     wallClockText(days.first * kSecondsPerDay), wallClockText((days.last + 1) * kSecondsPerDay - 1));
}

/// The contents of a calendar's elements, as markup.
struct Contents {
  std::string weekDays;
  std::string exceptions;
};

/// Appends the exception, and its entry among the week days.
void append(Contents& contents, const DayException& exception, const std::string& name) {
  const std::string working = dayWorking(exception.hours);
  const std::string period = timePeriod(exception.days);
  const std::string times = workingTimes(exception.hours);
  append(contents.weekDays, "<WeekDay><DayType>0</DayType>{}{}{}</WeekDay>", working, period, times);
  append(contents.exceptions,
         "<Exception><EnteredByOccurrences>0</EnteredByOccurrences>{}<Occurrences>{}</Occurrences><Name>{}</Name>"
         "<Type>1</Type>{}{}</Exception>",
         period, exception.days.last - exception.days.first + 1, xml::escapedText(name), working, times);
}

Contents contentsOf(const Calendar& calendar, const PlanHours& hours) {
  Contents contents;
  for (int day = kSunday; day <= kSaturday; ++day) {
    if (!calendar.days.namesWeekDay(day)) continue;
    const Hours ofDay = CalendarDays::written(calendar.days.weekDay(day));
    append(contents.weekDays, "<WeekDay><DayType>{}</DayType>{}{}</WeekDay>", day, dayWorking(ofDay),
           workingTimes(ofDay));
  }
  for (const DayException& exception : calendar.exceptions)
    append(contents, exception, hours.namesOf(exception.change));
  return contents;
}

// Writing.

/// Replaces the child of this name by one with the contents; removes it when there are no contents. Returns false when
/// the child already has these contents.
bool replaceChild(pugi::xml_node parent, const char* name, const std::string& contents) {
  const pugi::xml_node before = parent.child(name);
  pugi::xml_node after;
  if (!contents.empty()) {
    after = parent.append_child(name);
    appendMarkup(after, contents);
  }
  const bool changes = !isAlike(before, after);
  parent.remove_child(changes ? before : after);
  return changes;
}

void write(const Calendar& calendar, const PlanHours& hours, Report& report) {
  const Contents contents = contentsOf(calendar, hours);
  pugi::xml_node element = calendar.element;
  bool changed = replaceChild(element, "WeekDays", contents.weekDays);
  changed |= replaceChild(element, "Exceptions", contents.exceptions);
  changed |= element.remove_child("WorkWeeks");
  if (changed) report.count("calendars with other hours than the plan");
}

/// Whether any day has more working times than the format can hold.
bool hasMergedDays(const Calendar& calendar) {
  for (int day = kSunday; day <= kSaturday; ++day) {
    const Hours& hours = calendar.days.weekDay(day);
    if (calendar.days.namesWeekDay(day) && CalendarDays::written(hours) != hours) return true;
  }
  return std::any_of(calendar.exceptions.begin(), calendar.exceptions.end(),
                     [](const DayException& exception) { return exception.isMerged; });
}

void warn(const Calendar& calendar, PlanHours& hours, xml::Node resource, Report& report) {
  const std::string name = "resource " + sourceLabelOf(resource, "name");
  if (const std::size_t unsaid = hours.unsaid(calendar.resource); unsaid > 0) {
    report.warn(fmt::format("{}: time spans that are not within a day are cut or left out: {}", name, unsaid));
  }
  if (hours.isCutOff(calendar.resource)) {
    report.warn(name + ": time off and overtime before the year 1 or after 9999 is left out");
  }
  if (hasMergedDays(calendar)) {
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
