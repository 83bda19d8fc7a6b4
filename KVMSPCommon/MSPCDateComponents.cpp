#include "KVMSPCommon/MSPCDateComponents.h"

#include <fmt/format.h>

#include "Platform/Text/Texts.h"
#include "Platform/Time/Clock.h"
#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"
#include "Platform/Time/TimeZone.h"

using platform::GregorianCalendar;
using platform::Instant;
using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;
using platform::TimeZone;

namespace {

std::int64_t hoursOf(std::int64_t offset) { return offset / kSecondsPerHour; }
std::int64_t minutesOf(std::int64_t offset) { return offset / kSecondsPerMinute % 60; }

bool& offsetsAreAsMeant() {
  static bool inTheProcess = false;
  return inTheProcess;
}

}  // namespace

void MSPCDateComponents::takeOffsetsAsMeant() { offsetsAreAsMeant() = true; }
bool MSPCDateComponents::takesOffsetsAsMeant() { return offsetsAreAsMeant(); }

std::int64_t MSPCDateComponents::offsetMinutes(bool isNegative, std::int64_t minutes) {
  return isNegative && takesOffsetsAsMeant() ? -minutes : minutes;
}

MSPCDateComponents MSPCDateComponents::initWithNSDateComponents(const platform::DateComponents& components) {
  MSPCDateComponents record;
  static_cast<platform::DateComponents&>(record) = components;
  return record;
}

std::int64_t MSPCDateComponents::secondsFromGMT() const {
  if (isUTC_) return 0;
  return platform::saturated(static_cast<platform::Wide>(timeZoneHour_) * kSecondsPerHour +
                             static_cast<platform::Wide>(timeZoneMinute_) * kSecondsPerMinute);
}

Instant MSPCDateComponents::instant() const {
  const std::int64_t clock = GregorianCalendar::secondsFromCivil(civil());
  return {static_cast<double>(platform::saturated(static_cast<platform::Wide>(clock) - secondsFromGMT()))};
}

void MSPCDateComponents::fixUTC() { isUTC_ = timeZoneHour_ == 0 && timeZoneMinute_ == 0; }

void MSPCDateComponents::setUTC() {
  timeZoneHour_ = 0;
  timeZoneMinute_ = 0;
  isUTC_ = true;
}

std::int64_t MSPCDateComponents::secondsOfTime(MSPCUnitFlags unitFlags) const {
  platform::Wide seconds = 0;
  if ((unitFlags & kMSPCHour) != 0) seconds += static_cast<platform::Wide>(hour) * kSecondsPerHour;
  if ((unitFlags & kMSPCMinute) != 0) seconds += static_cast<platform::Wide>(minute) * kSecondsPerMinute;
  if ((unitFlags & kMSPCSecond) != 0) seconds += second;
  return platform::saturated(seconds);
}

std::int64_t MSPCDateComponents::systemOffset(Instant when) {
  const TimeZone& zone = TimeZone::system();
  if (!takesOffsetsAsMeant() && zone.isDaylightSavingTime(when)) {
    // If it is standard time now, a date in daylight-saving time is labelled with today's offset plus the share of
    // daylight-saving time, even if the zone's standard offset was different at that date.
    const Instant now = platform::Clock::now();
    if (!zone.isDaylightSavingTime(now)) return zone.daylightSavingOffset(when) + zone.secondsFromGMT(now);
  }
  return zone.secondsFromGMT(when);
}

MSPCUnitFlags MSPCDateComponents::forceSystemTimezoneforDate(std::optional<Instant> date) {
  setUTC();
  const std::int64_t offset = systemOffset(date ? *date : TimeZone::system().instantFromCivil(civil()));
  if (offset == 0) return kMSPCAllUnits;

  timeZoneMinute_ = minutesOf(offset);
  timeZoneHour_ = hoursOf(offset);
  isUTC_ = offset > -kSecondsPerHour && offset < kSecondsPerHour && timeZoneMinute_ == 0;
  return kMSPCAllUnits;
}

MSPCUnitFlags MSPCDateComponents::convertToUTC() {
  return isUTC_ ? kMSPCAllUnits : convertToTimeZoneForSecondsFromGMT(0);
}

MSPCUnitFlags MSPCDateComponents::convertToSystemTimezone() {
  const TimeZone& zone = TimeZone::system();
  if (takesOffsetsAsMeant()) return convertToTimeZoneForSecondsFromGMT(zone.secondsFromGMT(instant()));
  return convertToTimeZoneForSecondsFromGMT(zone.secondsFromGMT(zone.instantFromCivil(civil())));
}

MSPCUnitFlags MSPCDateComponents::convertToTimeZoneForSecondsFromGMT(std::int64_t seconds) {
  const std::int64_t clock = GregorianCalendar::secondsFromCivil(civil());
  const platform::Wide moved = static_cast<platform::Wide>(clock) - secondsFromGMT() + seconds;
  setCivil(GregorianCalendar::civilFromSeconds(platform::saturated(moved)));
  timeZoneMinute_ = minutesOf(seconds);
  timeZoneHour_ = hoursOf(seconds);
  fixUTC();
  return kMSPCAllUnits;
}

std::string MSPCDateComponents::componentsDescription() const {
  return DateComponents::componentsDescription() + fmt::format("\n  isUTC={}\n  timeZoneHour={}\n  timeZoneMinute={}",
                                                               isUTC_ ? 1 : 0, static_cast<std::int32_t>(timeZoneHour_),
                                                               static_cast<std::int32_t>(timeZoneMinute_));
}

std::string MSPCDateComponents::description() const { return "MSPCDateComponents:" + componentsDescription(); }
