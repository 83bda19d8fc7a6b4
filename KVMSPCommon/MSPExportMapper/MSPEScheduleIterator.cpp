#include "KVMSPCommon/MSPExportMapper/MSPEScheduleIterator.h"

#include <utility>

#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/TimeZone.h"

using platform::TimeZone;

namespace {

constexpr std::int64_t kFirstPeriodOfNewDay = 1;

}  // namespace

MSPEScheduleIterator::MSPEScheduleIterator(MSPEScheduleCalendar calendar, platform::Instant date, bool forward)
    : calendar_(std::move(calendar)),
      forward_(forward),
      dayStep_(forward ? platform::kSecondsPerDay : -platform::kSecondsPerDay),
      nextDate_(TimeZone::system().startOfDay(date)) {
  takeDay();
  if (calendar_.isWorkingDayWeekday(nextWeekday_)) {
    takeFirstPeriod();
  } else {
    nextWeekday_ = 0;
    nextTimePeriodIndex_ = 0;
    nextDateTimePeriods_ = 0;
    prepareNextIteration();
  }
}

void MSPEScheduleIterator::takeDay() {
  nextWeekday_ = TimeZone::system().weekday(nextDate_);
  nextDateTimePeriods_ = calendar_.timePeriodsInWeekday(nextWeekday_);
}

void MSPEScheduleIterator::takeFirstPeriod() {
  nextTimePeriodIndex_ = forward_ ? 0 : nextDateTimePeriods_ - 1;
  platform::require(nextTimePeriodIndex_ >= 0, "Incorrect time period index: {}", nextTimePeriodIndex_);
  found_ = true;
}

std::optional<MSPEScheduleIterator::Step> MSPEScheduleIterator::nextTimePeriod() {
  if (!found_) return std::nullopt;
  const auto& periods = *calendar_.workingDay(nextWeekday_).timePeriods;
  const Step step{periods[static_cast<std::size_t>(nextTimePeriodIndex_)], nextTimePeriodIndex_,
                  TimeZone::system().startOfDay(nextDate_), flag_};
  prepareNextIteration();
  return step;
}

void MSPEScheduleIterator::prepareNextIteration() {
  found_ = false;
  flag_ = 0;
  if (forward_ && nextTimePeriodIndex_ < nextDateTimePeriods_ - 1) {
    ++nextTimePeriodIndex_;
    found_ = true;
    return;
  }
  if (!forward_ && nextTimePeriodIndex_ >= 1) {
    --nextTimePeriodIndex_;
    found_ = true;
    return;
  }
  for (int step = 0; step < kDaysPerWeek; ++step) {
    nextDate_ = nextDate_ + dayStep_;
    takeDay();
    if (!calendar_.isWorkingDayWeekday(nextWeekday_)) continue;
    takeFirstPeriod();
    flag_ |= kFirstPeriodOfNewDay;
    return;
  }
}
