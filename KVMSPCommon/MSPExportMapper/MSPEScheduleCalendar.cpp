#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduleIterator.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;
using platform::kSecondsPerDay;
using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;
using platform::require;
using platform::TimeZone;

namespace {

/// Ten thousand years: an advance that takes longer finds no end.
constexpr std::int64_t kMaximumDays = 3'652'500;

bool isWeekday(std::int64_t weekday) { return weekday >= kSunday && weekday <= kSaturday; }

double secondsSinceMidnight(Instant instant) { return instant - TimeZone::system().startOfDay(instant); }

/// A `time-span`'s time in whole seconds; 0 when the attribute is missing, none when it is no number.
std::optional<std::int64_t> spanTime(xml::Node span, const char* name) {
  const auto text = span.attributeText(name);
  if (!text) return 0;
  const auto number = platform::scanDouble(*text);
  if (!number) return std::nullopt;
  return platform::truncated<std::int64_t>(number->value);
}

MSPETimePeriod periodBetween(std::int64_t start, std::int64_t end) {
  const auto hours = [](std::int64_t time) { return time / kSecondsPerHour; };
  const auto minutes = [](std::int64_t time) { return time % kSecondsPerHour / kSecondsPerMinute; };
  const auto seconds = [](std::int64_t time) { return time % kSecondsPerMinute; };
  return {hours(start), minutes(start), seconds(start), hours(end), minutes(end), seconds(end)};
}

}  // namespace

double MSPETimePeriod::startTime() const {
  return static_cast<double>((startHour * 60 + startMinute) * 60 + startSecond);
}

double MSPETimePeriod::endTime() const { return static_cast<double>((endHour * 60 + endMinute) * 60 + endSecond); }

MSPEScheduleCalendar MSPEScheduleCalendar::initWithStandardCalendar() {
  MSPEScheduleCalendar calendar;
  for (std::int64_t weekday = kMonday; weekday <= kFriday; ++weekday) {
    calendar.addWorkingTimePeriod({8, 0, 0, 12, 0, 0}, weekday);
    calendar.addWorkingTimePeriod({13, 0, 0, 17, 0, 0}, weekday);
  }
  return calendar;
}

MSPEScheduleCalendar MSPEScheduleCalendar::initWithKvdxSchedule(xml::Node schedule) {
  MSPEScheduleCalendar calendar;
  for (const xml::Node day : objectsForXQuery(schedule, "schedule-day")) {
    const auto weekday = weekdayOfName(day.attribute("day-of-week").value());
    if (!weekday) continue;
    for (const xml::Node span : objectsForXQuery(day, "time-span")) {
      const auto start = spanTime(span, "start-time");
      const auto end = spanTime(span, "end-time");
      if (start && end) calendar.addWorkingTimePeriod(periodBetween(*start, *end), *weekday);
    }
  }
  return calendar;
}

const MSPEScheduleCalendar& MSPEScheduleCalendar::standardCalendar() {
  static const MSPEScheduleCalendar calendar = initWithStandardCalendar();
  return calendar;
}

void MSPEScheduleCalendar::addWorkingTimePeriod(const MSPETimePeriod& timePeriod, std::int64_t weekday) {
  static_cast<void>(workingDay(weekday));  // checks the weekday
  WorkingDay& day = workingDays_[static_cast<std::size_t>(weekday)];
  if (!day.timePeriods) day.timePeriods.emplace();
  day.timePeriods->push_back(timePeriod);
  day.isWorkingDay = true;
}

const MSPEScheduleCalendar::WorkingDay& MSPEScheduleCalendar::workingDay(std::int64_t weekday) const {
  require(isWeekday(weekday), "Incorrect value of weekdey ({}). Should be from 1 to 7.", weekday);  // spelled so
  return workingDays_[static_cast<std::size_t>(weekday)];
}

std::int64_t MSPEScheduleCalendar::timePeriodsInWeekday(std::int64_t weekday) const {
  const auto& periods = workingDay(weekday).timePeriods;
  return periods ? static_cast<std::int64_t>(periods->size()) : 0;
}

/// The period, or none for another weekday and for a day without periods.
const MSPETimePeriod* MSPEScheduleCalendar::period(std::int64_t index, std::int64_t weekday) const {
  if (!isWeekday(weekday) || !workingDay(weekday).timePeriods) return nullptr;
  const auto& periods = *workingDay(weekday).timePeriods;
  if (index < 0 || index >= static_cast<std::int64_t>(periods.size())) {
    throw platform::Exception("RangeException", fmt::format("Time period {} is beyond the {} of weekday {}.", index,
                                                            periods.size(), weekday));
  }
  return &periods[static_cast<std::size_t>(index)];
}

double MSPEScheduleCalendar::durationOfTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const {
  const MSPETimePeriod* found = period(timePeriod, weekday);
  return found != nullptr ? found->duration() : -1.0;
}

double MSPEScheduleCalendar::durationOfWeekday(std::int64_t weekday) const {
  const WorkingDay& day = workingDay(weekday);
  double sum = -1.0;  // begins so, as "no duration" does
  if (!day.isWorkingDay || !day.timePeriods) return sum;
  for (const MSPETimePeriod& one : *day.timePeriods) sum += one.duration();
  return sum;
}

std::optional<MSPEScheduleCalendar::TimeOfDay> MSPEScheduleCalendar::startHour(std::int64_t timePeriod,
                                                                               std::int64_t weekday) const {
  const MSPETimePeriod* found = period(timePeriod, weekday);
  if (found == nullptr) return std::nullopt;
  return TimeOfDay{found->startHour, found->startMinute, found->startSecond};
}

std::optional<MSPEScheduleCalendar::TimeOfDay> MSPEScheduleCalendar::endHour(std::int64_t timePeriod,
                                                                             std::int64_t weekday) const {
  const MSPETimePeriod* found = period(timePeriod, weekday);
  if (found == nullptr) return std::nullopt;
  return TimeOfDay{found->endHour, found->endMinute, found->endSecond};
}

double MSPEScheduleCalendar::startTimeForTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const {
  const MSPETimePeriod* found = period(timePeriod, weekday);
  return found != nullptr ? found->startTime() : -1.0;
}

double MSPEScheduleCalendar::endTimeForTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const {
  const MSPETimePeriod* found = period(timePeriod, weekday);
  return found != nullptr ? found->endTime() : -1.0;
}

std::int64_t MSPEScheduleCalendar::timePeriodFromDuration(double duration, bool forward, std::int64_t weekday) const {
  const std::int64_t count = timePeriodsInWeekday(weekday);
  double before = 0;
  for (std::int64_t step = 0; step < count; ++step) {
    const std::int64_t index = forward ? step : count - 1 - step;
    const double including = before + durationOfTimePeriod(index, weekday);
    if (duration > before && duration <= including) return index;
    before = including;
  }
  return kNotFound;
}

std::int64_t MSPEScheduleCalendar::timePeriodEndDuration(double duration, double /*startedAt*/, bool forward,
                                                         std::int64_t weekday) const {
  return timePeriodFromDuration(duration, forward, weekday);
}

double MSPEScheduleCalendar::startTimeOfPeriodFound(std::int64_t timePeriod, std::int64_t weekday) const {
  if (timePeriod == kNotFound) return -1.0;
  const MSPETimePeriod* found = period(timePeriod, weekday);
  require(found != nullptr, "Failed to get starting hour of time period {} at weekday {}.", timePeriod, weekday);
  return found->startTime();
}

double MSPEScheduleCalendar::dayTimeFromDuration(double duration, bool forward, std::int64_t weekday) const {
  return startTimeOfPeriodFound(timePeriodFromDuration(duration, forward, weekday), weekday);
}

double MSPEScheduleCalendar::dayTimeEndDuration(double duration, double startedAt, bool forward,
                                                std::int64_t weekday) const {
  return startTimeOfPeriodFound(timePeriodEndDuration(duration, startedAt, forward, weekday), weekday);
}

bool MSPEScheduleCalendar::isWorkingDay(Instant date) const {
  return isWorkingDayWeekday(TimeZone::system().weekday(date));
}

std::optional<MSPEScheduleCalendar::Start> MSPEScheduleCalendar::startDateStartDurationStartTimePeriod(
    Instant forDate, bool forward) const {
  const TimeZone& zone = TimeZone::system();
  const double time = secondsSinceMidnight(forDate);
  Instant day = forDate;
  for (std::int64_t tries = 0; tries < kDaysPerWeek; ++tries) {
    const Instant midnight = zone.startOfDay(day);
    const WorkingDay& workingDay = this->workingDay(zone.weekday(day));
    const std::int64_t count = workingDay.isWorkingDay && workingDay.timePeriods
                                   ? static_cast<std::int64_t>(workingDay.timePeriods->size())
                                   : 0;
    for (std::int64_t step = 0; step < count; ++step) {
      const std::int64_t index = forward ? step : count - 1 - step;
      const MSPETimePeriod& candidate = (*workingDay.timePeriods)[static_cast<std::size_t>(index)];
      double start = forward ? candidate.startTime() : candidate.endTime();
      if (tries == 0) {
        // The given day: what of it lies after the given time (before it when backward).
        if (forward ? candidate.endTime() <= time : candidate.startTime() >= time) continue;
        start = forward ? std::max(start, time) : std::min(start, time);
      }
      return Start{midnight + start, start, index};
    }
    day = day + (forward ? kSecondsPerDay : -kSecondsPerDay);
  }
  return std::nullopt;
}

std::optional<Instant> MSPEScheduleCalendar::startDate(Instant forDate, bool forward) const {
  const auto start = startDateStartDurationStartTimePeriod(forDate, forward);
  if (!start) return std::nullopt;
  return start->date;
}

/// One advance under way: counts an amount of working time down over the periods of successive days.
class MSPEScheduleCalendar::Countdown {
 public:
  Countdown(const MSPEScheduleCalendar& calendar, const Start& start, double duration, bool forward, bool allowEdgeTime)
      : calendar_(calendar),
        forward_(forward),
        allowEdgeTime_(allowEdgeTime),
        day_(start.date - start.duration),
        cursor_(start.duration),
        period_(start.timePeriod),
        remaining_(duration) {}

  [[nodiscard]] std::optional<Instant> run() {
    while (!answer_ && remaining_ > 0) {
      if (calendar_.isWorkingDayWeekday(weekday())) walkDay();
      if (answer_) break;
      stepDay();
      if (isStuck()) return std::nullopt;
    }
    if (!answer_) return std::nullopt;
    return TimeZone::system().startOfDay(day_) + *answer_;
  }

 private:
  [[nodiscard]] std::int64_t weekday() const { return TimeZone::system().weekday(day_); }
  [[nodiscard]] std::int64_t periodCount() const { return calendar_.timePeriodsInWeekday(weekday()); }

  void stepDay() {
    day_ = day_ + (forward_ ? kSecondsPerDay : -kSecondsPerDay);
    ++daysStepped_;
  }

  /// Whether weeks went by without any working time (periods may be empty, or end before they start). Steps of 86400
  /// seconds can pass a weekday by where clocks change, so that one week tells nothing.
  [[nodiscard]] bool isStuck() {
    if (daysStepped_ > kMaximumDays) return true;
    if (daysStepped_ - checkedAtDay_ < std::int64_t{3} * kDaysPerWeek) return false;
    const bool stuck = remaining_ >= remainingAtCheck_;
    checkedAtDay_ = daysStepped_;
    remainingAtCheck_ = remaining_;
    return stuck;
  }

  void walkDay() {
    const std::int64_t count = periodCount();
    require(count >= period_, "Working day has no or too few working time periods.");
    if (daysStepped_ > 0) period_ = forward_ ? 0 : count - 1;
    for (std::int64_t i = period_; i >= 0 && i < count; i += forward_ ? 1 : -1) {
      const double start = calendar_.startTimeForTimePeriod(i, weekday());
      const double end = calendar_.endTimeForTimePeriod(i, weekday());
      if (periodsConsumed_ > 0) cursor_ = forward_ ? start : end;
      const double target = forward_ ? cursor_ + remaining_ : cursor_ - remaining_;
      if (forward_ ? end < target : target < start) {
        remaining_ -= forward_ ? end - cursor_ : cursor_ - start;
        ++periodsConsumed_;
        continue;
      }
      const bool isEdge = target == (forward_ ? end : start);
      if (!isEdge || allowEdgeTime_) {
        answer_ = target;
      } else {
        moveBeyondEdge(i);
      }
      return;  // without an answer the day that the search came to is done with, too
    }
  }

  /// Takes the beginning (backward: the end) of the next period, on this day or a later one, as the answer. Leaves no
  /// answer when the days that one advance may look at are used up.
  void moveBeyondEdge(std::int64_t period) {
    const std::int64_t next = period + (forward_ ? 1 : -1);
    if (next >= 0 && next < periodCount()) {
      answer_ = edgeOf(next);
      return;
    }
    while (daysStepped_ < kDaysPerWeek) {
      stepDay();
      if (calendar_.isWorkingDayWeekday(weekday()) && periodCount() > 0) {
        answer_ = edgeOf(forward_ ? 0 : periodCount() - 1);
        return;
      }
    }
  }

  [[nodiscard]] double edgeOf(std::int64_t period) const {
    return forward_ ? calendar_.startTimeForTimePeriod(period, weekday())
                    : calendar_.endTimeForTimePeriod(period, weekday());
  }

  const MSPEScheduleCalendar& calendar_;
  bool forward_;
  bool allowEdgeTime_;
  Instant day_;
  double cursor_;
  std::int64_t period_;
  double remaining_;
  std::int64_t periodsConsumed_ = 0;
  std::int64_t daysStepped_ = 0;
  std::int64_t checkedAtDay_ = 0;
  double remainingAtCheck_ = std::numeric_limits<double>::infinity();
  std::optional<double> answer_;
};

std::optional<Instant> MSPEScheduleCalendar::date(std::optional<Instant> date, double advanceByDuration, bool forward,
                                                  bool allowEdgeTime) const {
  require(date.has_value(), "Date to advance from not specified.");
  require(advanceByDuration >= 0, "Duration can not be negative. To specify backward advance use argument forward=NO.");
  const auto start = startDateStartDurationStartTimePeriod(*date, forward);
  if (!start) return std::nullopt;
  if (std::abs(advanceByDuration) < 1.0) return start->date;
  require(start->timePeriod >= 0, "No time period specified to start duration countdown from.");
  return Countdown(*this, *start, advanceByDuration, forward, allowEdgeTime).run();
}

double MSPEScheduleCalendar::workingTimeFromDate(Instant date, Instant toDate) const {
  if (date >= toDate) return 0.0;
  const TimeZone& zone = TimeZone::system();
  const Instant firstDay = zone.startOfDay(date);
  const Instant lastDay = zone.startOfDay(toDate);
  double total = 0;
  MSPEScheduleIterator iterator(*this, date, true);
  while (const auto step = iterator.nextTimePeriod()) {
    if (step->date > lastDay) break;
    const double lower = step->date == firstDay ? secondsSinceMidnight(date) : 0.0;
    const double upper = step->date == lastDay ? secondsSinceMidnight(toDate) : kSecondsPerDay;
    const double from = std::max(lower, step->timePeriod.startTime());
    const double to = std::min(upper, step->timePeriod.endTime());
    if (to > from) total += to - from;
  }
  return total > 0 ? total : 0.0;
}

std::string MSPEScheduleCalendar::description() const {
  std::string text = "MSPEScheduleCalendar";
  for (std::size_t i = 0; i < workingDays_.size(); ++i) {
    const WorkingDay& day = workingDays_[i];
    std::string periods;
    if (day.timePeriods) {
      for (const MSPETimePeriod& one : *day.timePeriods) {
        periods += fmt::format(" {}:{:02d}:{:02d}-{}:{:02d}:{:02d}", one.startHour, one.startMinute, one.startSecond,
                               one.endHour, one.endMinute, one.endSecond);
      }
    }
    text += fmt::format("\n  {}: '{}' isWorkingDay={} timePeriods={}: {}", i, i == 0 ? "(null)" : kDayNames[i],
                        day.isWorkingDay ? "YES" : "NO", day.timePeriods ? day.timePeriods->size() : 0, periods);
  }
  return text;
}
