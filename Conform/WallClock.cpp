#include "Conform/WallClock.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include "Conform/Hours.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"
#include "Platform/Time/TimeZone.h"

namespace conform {

using platform::GregorianCalendar;
using platform::kSecondsPerDay;

std::optional<std::int64_t> wallClock(std::string_view kvdx) {
  if (kvdx.empty()) return std::nullopt;
  MSPCDateComponents record;
  const MSPCUnitFlags flags = MSPIUtilities::updateDateTimeComponentsFromISODateTime(record, kvdx);
  if ((flags & kMSPCTimeZoneUnits) == 0) return GregorianCalendar::secondsFromCivil(record.civil());

  const platform::TimeZone& zone = platform::TimeZone::system();
  const platform::Instant instant = MSPIUtilities::kvdxToMppDateTime(kvdx).value();
  const std::int64_t reading = zone.civilSecondsFromInstant(instant);
  return zone.startOfDay(instant) == instant ? dayOf(reading) * kSecondsPerDay : reading;
}

std::optional<std::int64_t> wallClockOfText(std::string_view mspdi) {
  const auto record = MSPIUtilities::componentsFromISODateTime(mspdi);
  if (!record) return std::nullopt;
  return GregorianCalendar::secondsFromCivil(record->civil());
}

std::string wallClockText(std::int64_t reading) {
  const platform::CivilTime civil = GregorianCalendar::civilFromSeconds(reading);
  return fmt::format(FMT_COMPILE("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}"), civil.year, civil.month, civil.day, civil.hour,
                     civil.minute, civil.second);
}

std::int64_t dayOf(std::int64_t reading) {
  return (reading - GregorianCalendar::secondOfDay(reading)) / kSecondsPerDay;
}

int weekdayOf(std::int64_t day) { return GregorianCalendar::weekday(day * kSecondsPerDay); }

std::int64_t firstDayOfYear(std::int64_t year) {
  return dayOf(GregorianCalendar::secondsFromCivil({year, 1, 1, 0, 0, 0}));
}

}  // namespace conform
