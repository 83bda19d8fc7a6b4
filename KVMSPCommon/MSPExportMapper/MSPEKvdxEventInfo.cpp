#include "KVMSPCommon/MSPExportMapper/MSPEKvdxEventInfo.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCDateComponents.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarDates.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;
using platform::kSecondsPerDay;
using platform::require;

namespace {

double secondOfDay(Instant instant) {
  const platform::TimeZone& zone = platform::TimeZone::system();
  // Where the clocks skip midnight, the day begins at 01:00 or so.
  if (MSPCDateComponents::takesOffsetsAsMeant() && zone.startOfDay(instant) == instant) return 0;
  const auto civilSeconds = zone.civilSecondsFromInstant(instant);
  return static_cast<double>(platform::GregorianCalendar::secondOfDay(civilSeconds));
}

}  // namespace

MSPEKvdxEventInfo MSPEKvdxEventInfo::initWithKvdxEvent(xml::Node event) {
  const platform::TimeZone& zone = platform::TimeZone::system();
  const Instant first = calendarDate(event, "start");
  const Instant last = calendarDate(event, "end");
  MSPEKvdxEventInfo info(zone.startOfDay(first), zone.endOfDay(last), secondOfDay(first), secondOfDay(last));

  require(info.end_ >= info.start_, "Incoorrect calendar event start ({}) and end ({}) time.",
          MSPIUtilities::hourMinSecFromDuration(info.start_), MSPIUtilities::hourMinSecFromDuration(info.end_));
  if (info.start_ == info.end_) {
    require(info.start_ == 0, "Calendar event start and end times may be equal only at midnight (00:00:00).");
    require(info.toDate_ - info.fromDate_ >= kSecondsPerDay, "Calendar event start and end days are too close.");
    info.toDate_ = info.toDate_ - kSecondsPerDay;
    info.end_ = kSecondsPerDay - 1;
  }
  return info;
}

std::string MSPEKvdxEventInfo::description() const {
  return fmt::format("MSPEKvdxEventInfo: fromDate='{}' toDate='{}' start={} end={}",
                     platform::orNull(MSPIUtilities::mppToMspdiDateTime(fromDate_)),
                     platform::orNull(MSPIUtilities::mppToMspdiDateTime(toDate_)),
                     MSPIUtilities::hourMinSecFromDuration(start_), MSPIUtilities::hourMinSecFromDuration(end_));
}
