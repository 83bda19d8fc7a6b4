#include "KVMSPCommon/MSPExportMapper/MSPExtensions.h"

#include "Platform/System/Log.h"

platform::Instant MSPExtensions::dateAdvancedByDuration(platform::Instant date, double duration, bool forward,
                                                        bool allowEdgeTime, const MSPEScheduleCalendar* calendar) {
  if (calendar != nullptr) {
    platform::log(
        "WARINING: Custom Calendars not supported to advance date by duration yet. Standard propject Calendar will be "
        "used instead.");
  }
  return MSPEScheduleCalendar::standardCalendar().date(date, duration, forward, allowEdgeTime).value_or(date);
}

platform::Instant MSPExtensions::dateAdvancedByDuration(platform::Instant date, double duration, bool forward,
                                                        const MSPEScheduleCalendar* calendar) {
  return dateAdvancedByDuration(date, duration, forward, true, calendar);
}

bool MSPExtensions::isWorkingDayInCalendar(platform::Instant date, const MSPEScheduleCalendar* calendar) {
  if (calendar != nullptr) {
    platform::log(
        "WARINING: Custom Calendars not supported to determine working days yet. Standard propject Calendar will be "
        "used instead.");
  }
  return MSPEScheduleCalendar::standardCalendar().isWorkingDay(date);
}
