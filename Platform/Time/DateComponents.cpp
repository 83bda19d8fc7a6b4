#include "Platform/Time/DateComponents.h"

#include <fmt/format.h>

namespace platform {
namespace {

std::int64_t orFirst(std::int64_t component, std::int64_t first) {
  return component == kUndefinedComponent ? first : component;
}

/// Descriptions show only the low 32 bits of each number.
std::int32_t low(std::int64_t number) { return static_cast<std::int32_t>(number); }

}  // namespace

CivilTime DateComponents::civil() const {
  CivilTime civil{orFirst(year, 1), orFirst(month, 1),  orFirst(day, 1),
                  orFirst(hour, 0), orFirst(minute, 0), orFirst(second, 0)};
  if (era == 0) civil.year = 1 - civil.year;
  return civil;
}

void DateComponents::setCivil(const CivilTime& civil) {
  year = civil.year >= 1 ? civil.year : 1 - civil.year;
  month = civil.month;
  day = civil.day;
  hour = civil.hour;
  minute = civil.minute;
  second = civil.second;
}

std::string DateComponents::componentsDescription() const {
  return fmt::format(
      "\n  era={}\n  year={}\n  month={}\n  day={}\n  hour={}\n  minute={}\n  second={}\n  weekOfMonth={}"
      "\n  weekOfYear={}\n  weekday={}\n  weekdayOrdinal={}\n  quarter={}",
      low(era), low(year), low(month), low(day), low(hour), low(minute), low(second), low(weekOfMonth), low(weekOfYear),
      low(weekday), low(weekdayOrdinal), low(quarter));
}

std::string DateComponents::description() const { return "NSDateComponents:" + componentsDescription(); }

}  // namespace platform
