#include "KVMSPCommon/MSPExportMapper/MSPECalendarExceptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarDates.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;
using platform::kSecondsPerDay;
using platform::require;

namespace {

/// Far more than any real calendar has, and few enough for any machine's memory.
constexpr std::size_t kMaximumWorkingTimes = 1'000'000;

double secondsAttribute(xml::Node element, const char* name) {
  return static_cast<double>(platform::integerValue(element.attribute(name).value()));
}

}  // namespace

MSPECalendarExceptions MSPECalendarExceptions::initWithKvdxCalendar(xml::Node calendar) {
  const auto overtime = calendar.attributeText("overtime");
  std::vector<MSPEKvdxEventInfo> events;
  for (const xml::Node event : objectsForXQuery(calendar, "event")) {
    events.push_back(MSPEKvdxEventInfo::initWithKvdxEvent(event));
  }
  return {calendar.attributeText("name"), overtime && !overtime->empty() && boolFromString(*overtime),
          std::move(events)};
}

MSPECalendarExceptions MSPECalendarExceptions::initWithKvdxFlattenedExceptions(const std::vector<xml::Node>& days,
                                                                               bool overtime) {
  const platform::TimeZone& zone = platform::TimeZone::system();
  std::vector<MSPEKvdxEventInfo> events;
  for (const xml::Node day : days) {
    const Instant date = calendarDate(day, "date");
    const Instant from = zone.startOfDay(date);
    const Instant to = zone.endOfDay(date);
    const auto spans = objectsForXQuery(day, "time-span");
    if (overtime) {
      require(!spans.empty(), "We expect one or more 'time-span' children with time range.");
      for (const xml::Node span : spans) {
        events.emplace_back(from, to, secondsAttribute(span, "start-time"), secondsAttribute(span, "end-time"));
      }
    } else {
      require(spans.empty(), "There should be no 'time-span' children. We need just a date.");
      events.emplace_back(from, to);
    }
  }
  return {overtime ? "Overtime" : "Time Off", overtime, std::move(events)};
}

MSPECalendarExceptions::MSPECalendarExceptions(std::optional<std::string> calendarName, bool overtime,
                                               std::vector<MSPEKvdxEventInfo> events)
    : calendarName_(std::move(calendarName)), overtime_(overtime), kvdxEventInfos_(std::move(events)) {
  std::stable_sort(kvdxEventInfos_.begin(), kvdxEventInfos_.end(),
                   [](const MSPEKvdxEventInfo& a, const MSPEKvdxEventInfo& b) {
                     return a.fromDate() != b.fromDate() ? a.fromDate() < b.fromDate() : a.toDate() < b.toDate();
                   });
}

void MSPECalendarExceptions::mapEvents() {
  mppExceptionInfos_.clear();
  if (kvdxEventInfos_.empty()) return;
  sweep();
  mergeEqualNeighbours();
}

void MSPECalendarExceptions::sweep() {
  const auto& events = kvdxEventInfos_;
  Instant rangeEnd = events.front().toDate();
  for (const MSPEKvdxEventInfo& event : events) {
    requireCountableDays(event.fromDate());
    requireCountableDays(event.toDate());
    rangeEnd = std::max(rangeEnd, event.toDate());
  }

  // Events are added to `active` in list order as the cursor reaches them and removed when they are over, so that each
  // step only looks at the events that hold at the cursor.
  std::vector<const MSPEKvdxEventInfo*> active;
  std::size_t next = 0;  // the first event that begins after the cursor
  std::size_t workingTimesCount = 0;
  for (Instant cursor = events.front().fromDate(); cursor < rangeEnd;) {
    for (; next < events.size() && events[next].fromDate() <= cursor; ++next) active.push_back(&events[next]);
    std::erase_if(active, [cursor](const MSPEKvdxEventInfo* event) { return event->toDate() < cursor; });
    const std::optional<Instant> nextStart =
        next < events.size() ? std::optional(events[next].fromDate()) : std::nullopt;
    if (active.empty()) {
      cursor = nextStart.value_or(rangeEnd);
      continue;
    }

    MSPEExceptionInfo& exception = mppExceptionInfos_.emplace_back(cursor);
    Instant end = rangeEnd;
    for (const MSPEKvdxEventInfo* event : active) {
      end = std::min(end, event->toDate());
      if (!event->hasTimeRange()) continue;
      require(++workingTimesCount <= kMaximumWorkingTimes,
              "Calendar events overlap too much: more than {} working times in exceptions of calendar '{}'.",
              kMaximumWorkingTimes, platform::orNull(calendarName_));
      exception.workingTimes().emplace_back(event->start(), event->end());
    }
    if (nextStart && *nextStart < end) end = *nextStart - 1;  // stop just before the next event begins
    exception.setToDate(end);
    platform::Budget::spend(sizeof exception + exception.workingTimes().size() * sizeof(MSPEWorkingTime));
    std::stable_sort(exception.workingTimes().begin(), exception.workingTimes().end(),
                     [](const MSPEWorkingTime& a, const MSPEWorkingTime& b) { return a.fromTime() < b.fromTime(); });
    cursor = end + 1;
  }
}

void MSPECalendarExceptions::mergeEqualNeighbours() {
  std::vector<MSPEExceptionInfo> merged;
  for (MSPEExceptionInfo& exception : mppExceptionInfos_) {
    if (!merged.empty() && merged.back().workingTimes() == exception.workingTimes()) {
      exception.setFromDate(merged.back().fromDate());
      merged.back() = std::move(exception);
    } else {
      merged.push_back(std::move(exception));
    }
  }
  mppExceptionInfos_ = std::move(merged);
}

std::optional<MSPECalendarExceptions::Period> MSPECalendarExceptions::exception(std::int64_t index) const {
  if (index < 0 || index >= exceptionsCount()) return std::nullopt;
  const MSPEExceptionInfo& info = mppExceptionInfos_[static_cast<std::size_t>(index)];
  const Instant to = info.toDate().value();
  const double days = std::ceil((to - info.fromDate()) / kSecondsPerDay);
  return Period{info.fromDate(), to, platform::truncated<std::int64_t>(days)};
}

std::optional<std::int64_t> MSPECalendarExceptions::exceptionWorkingTimesCount(std::int64_t index) const {
  if (index < 0 || index >= exceptionsCount()) return std::nullopt;
  return static_cast<std::int64_t>(mppExceptionInfos_[static_cast<std::size_t>(index)].workingTimes().size());
}

std::optional<MSPEWorkingTime> MSPECalendarExceptions::exception(std::int64_t index, std::int64_t workingTime) const {
  const auto count = exceptionWorkingTimesCount(index);
  if (!count || workingTime < 0 || workingTime >= *count) return std::nullopt;
  return mppExceptionInfos_[static_cast<std::size_t>(index)].workingTimes()[static_cast<std::size_t>(workingTime)];
}

std::string MSPECalendarExceptions::description() const {
  std::string exceptions;
  for (const MSPEExceptionInfo& info : mppExceptionInfos_) exceptions += "\n" + info.description();
  return fmt::format("MSPECalendarExceptions: name='{}' overtime={} exceptions ({}): {}",
                     platform::orNull(calendarName_), overtime_ ? "YES" : "NO", exceptionsCount(), exceptions);
}
