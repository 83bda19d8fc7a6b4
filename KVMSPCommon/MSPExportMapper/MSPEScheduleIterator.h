#pragma once

#include <cstdint>
#include <optional>

#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"
#include "Platform/Time/Instant.h"

/// Walks the working periods of a calendar, day by day. Keeps a calendar of its own.
class MSPEScheduleIterator {
 public:
  /// A period handed out.
  struct Step {
    MSPETimePeriod timePeriod;
    std::int64_t timePeriodIndex;
    platform::Instant date;  ///< the day's midnight
    std::int64_t flag;       ///< bit 0: the first period of a day that the walk came to (not of the one it began on)
  };

  /// Begins with the first period of the instant's day (the last one when backward), or of the next working day.
  MSPEScheduleIterator(MSPEScheduleCalendar calendar, platform::Instant date, bool forward);

  /// The next period; none when a week without working days ended the walk.
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
