#pragma once

#include <cstdint>
#include <optional>

#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"
#include "Platform/Time/Instant.h"

/// Walks the working periods of a calendar, day by day. Keeps its own copy of the calendar.
class MSPEScheduleIterator {
 public:
  /// A period of the walk.
  struct Step {
    MSPETimePeriod timePeriod;
    std::int64_t timePeriodIndex;
    platform::Instant date;  ///< the day's midnight
    std::int64_t flag;       ///< bit 0: the first period of its day, unless it is the day on which the walk began
  };

  /// Starts with the first period (backward: the last) of the instant's day, or of the next working day.
  MSPEScheduleIterator(MSPEScheduleCalendar calendar, platform::Instant date, bool forward);

  /// The next period; none at the end of the walk, which is after a week without working days.
  [[nodiscard]] std::optional<Step> nextTimePeriod();

 private:
  void prepareNextIteration();
  void takeDay();
  void takeFirstPeriod();

  MSPEScheduleCalendar calendar_;
  bool forward_;
  double dayStep_;
  platform::Instant nextDate_;
  std::int64_t nextWeekday_ = 0;
  std::int64_t nextDateTimePeriods_ = 0;
  std::int64_t nextTimePeriodIndex_ = 0;
  std::int64_t flag_ = 0;
  bool found_ = false;
};
