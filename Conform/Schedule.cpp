#include "Conform/Schedule.h"

#include <algorithm>
#include <utility>

#include "Conform/WallClock.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerDay;

namespace conform {
namespace {

constexpr const char* kOvertime = "Overtime";
constexpr const char* kTimeOff = "Time Off";

/// Far more than any real schedule has, and few enough for any machine's memory.
constexpr std::size_t kMaximumOverlaps = 10'000'000;

/// An event: the days on which it holds, and its hours on each of them.
struct Event {
  std::int64_t first = 0;
  std::int64_t last = 0;
  Span hours;
  bool overtime = false;
  std::size_t source = 0;
};

std::size_t addSource(std::vector<std::string>& sources, std::string name) {
  sources.push_back(std::move(name));
  return sources.size() - 1;
}

/// Days and hours of an `event`; none when one of its dates is missing or it ends before it starts.
std::optional<Event> eventOf(xml::Node element) {
  const auto start = wallClock(element.attribute("start").value());
  const auto end = wallClock(element.attribute("end").value());
  if (!start || !end) return std::nullopt;
  Event event;
  event.first = dayOf(*start);
  event.last = dayOf(*end);
  std::int64_t from = *start - event.first * kSecondsPerDay;
  std::int64_t to = *end - event.last * kSecondsPerDay;
  if (from == 0 && to == 0) {
    to = kSecondsPerDay;
    --event.last;
  }
  if (from >= to || event.first > event.last) return std::nullopt;
  event.hours = {from, to};
  return event;
}

/// The combined change of events that hold at the same time: first all overtime, then all time off.
DayChange changeOf(const std::vector<const Event*>& events) {
  std::vector<Span> overtime;
  std::vector<Span> timeOff;
  std::vector<std::size_t> sources;
  for (const Event* event : events) {
    (event->overtime ? overtime : timeOff).push_back(event->hours);
    sources.push_back(event->source);
  }
  std::sort(sources.begin(), sources.end());
  sources.erase(std::unique(sources.begin(), sources.end()), sources.end());
  DayChange change{Hours(std::move(timeOff)), Hours(std::move(overtime)), std::move(sources)};
  change.gives.remove(change.takes);
  return change;
}

/// The changes made by events, which may overlap. On all days of a stretch, the same events hold.
DayChanges changesOf(std::vector<Event> events) {
  std::stable_sort(events.begin(), events.end(), [](const Event& a, const Event& b) { return a.first < b.first; });
  DayChanges changes;
  std::vector<const Event*> holding;
  std::size_t overlaps = 0;
  std::int64_t day = 0;
  for (auto next = events.begin(); next != events.end() || !holding.empty();) {
    if (holding.empty()) day = next->first;
    for (; next != events.end() && next->first == day; ++next) holding.push_back(&*next);
    std::int64_t last = next != events.end() ? next->first - 1 : holding.front()->last;
    for (const Event* event : holding) last = std::min(last, event->last);
    overlaps += holding.size();
    platform::require(overlaps <= kMaximumOverlaps,
                      "Calendar events overlap too much: more than {} working times in changed days.",
                      kMaximumOverlaps);
    changes.push_back({day, last, changeOf(holding)});
    day = last + 1;
    std::erase_if(holding, [day](const Event* event) { return event->last < day; });
  }
  return changes;
}

}  // namespace

std::int64_t firstKeptDay() { return firstDayOfYear(1); }
std::int64_t lastKeptDay() { return firstDayOfYear(10000) - 1; }

Schedule::Schedule(xml::Node resource, std::vector<std::string>& sources) {
  const xml::Node schedule = singleObjectForXQuery(resource, "schedule");
  if (!schedule) return;
  const bool isFlattened = !objectsForXQuery(schedule, "flattened-schedule-day").empty();
  readWeek(schedule, isFlattened);
  const auto dated =
      isFlattened ? objectsForXQuery(schedule, "flattened-schedule-day[@date]") : std::vector<xml::Node>();
  if (dated.empty()) {
    readCalendars(schedule, sources);
  } else {
    readDatedDays(dated, sources);
  }
}

void Schedule::readWeek(xml::Node schedule, bool isFlattened) {
  const xml::Query query = isFlattened ? xml::Query("flattened-schedule-day[@day-of-week]") : "schedule-day";
  for (const xml::Node day : objectsForXQuery(schedule, query)) {
    const auto weekday = weekdayOfName(day.attribute("day-of-week").value());
    if (weekday) week_[static_cast<std::size_t>(*weekday)] = hoursOf(objectsForXQuery(day, "time-span"));
  }
}

void Schedule::readDatedDays(const std::vector<xml::Node>& days, std::vector<std::string>& sources) {
  const std::size_t overtime = addSource(sources, kOvertime);
  const std::size_t timeOff = addSource(sources, kTimeOff);
  for (const xml::Node element : days) {
    const auto date = wallClock(element.attribute("date").value());
    if (!date) continue;
    std::int64_t first = dayOf(*date);
    std::int64_t last = first;
    const auto spans = objectsForXQuery(element, "time-span");
    DayChange change{Hours::wholeDay(), hoursOf(spans), {spans.empty() ? timeOff : overtime}};
    if (keepDays(first, last)) changes_.push_back({first, last, std::move(change)});
  }
  const auto earlier = [](const ChangedDays& a, const ChangedDays& b) { return a.first < b.first; };
  std::stable_sort(changes_.begin(), changes_.end(), earlier);
  // In reverse, so that the last of several equal dates is kept.
  const auto kept = std::unique(changes_.rbegin(), changes_.rend(),
                                [](const ChangedDays& a, const ChangedDays& b) { return a.first == b.first; });
  changes_.erase(changes_.begin(), kept.base());
}

void Schedule::readCalendars(xml::Node schedule, std::vector<std::string>& sources) {
  std::vector<Event> events;
  for (const xml::Node calendar : objectsForXQuery(schedule, "calendar")) {
    const bool overtime = boolFromString(calendar.attribute("overtime").value());
    std::string name = stringByReplacingOccurrencesOfNewline(calendar.attribute("name").value());
    if (name.empty()) name = overtime ? kOvertime : kTimeOff;
    const std::size_t source = addSource(sources, std::move(name));
    for (const xml::Node element : objectsForXQuery(calendar, "event")) {
      auto event = eventOf(element);
      if (!event || !keepDays(event->first, event->last)) continue;
      event->overtime = overtime;
      event->source = source;
      events.push_back(*event);
    }
  }
  changes_ = changesOf(std::move(events));
}

Hours Schedule::hoursOf(const std::vector<xml::Node>& timeSpans) {
  Hours hours;
  for (const xml::Node span : timeSpans) {
    const std::int64_t from = platform::integerValue(span.attribute("start-time").value());
    const std::int64_t to = platform::integerValue(span.attribute("end-time").value());
    if (!hours.add(from, to)) ++unsaid_;
  }
  return hours;
}

/// Limits the days to those that are kept. False when none is left.
bool Schedule::keepDays(std::int64_t& first, std::int64_t& last) {
  if (first < firstKeptDay() || last > lastKeptDay()) isCutOff_ = true;
  first = std::max(first, firstKeptDay());
  last = std::min(last, lastKeptDay());
  return first <= last;
}

}  // namespace conform
