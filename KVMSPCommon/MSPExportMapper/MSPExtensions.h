#pragma once

#include "KVMSPCommon/MSPExportMapper/MSPEScheduleCalendar.h"
#include "Platform/Time/Instant.h"

/// Working-time operations on instants. All use the standard calendar; when another one is given, the log says that it
/// is ignored.
class MSPExtensions {
 public:
  /// The instant, moved by an amount of working time (seconds); unchanged when no working time is found.
  [[nodiscard]] static platform::Instant dateAdvancedByDuration(platform::Instant date, double duration, bool forward,
                                                                bool allowEdgeTime,
                                                                const MSPEScheduleCalendar* calendar);
  /// The same with edge time allowed.
  [[nodiscard]] static platform::Instant dateAdvancedByDuration(platform::Instant date, double duration, bool forward,
                                                                const MSPEScheduleCalendar* calendar);
  [[nodiscard]] static bool isWorkingDayInCalendar(platform::Instant date, const MSPEScheduleCalendar* calendar);
};
