#include "KVMSPCommon/MSPImportMapper/MSPIUsualDateTime.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/RegularExpression.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/TimeZone.h"

// Reading and printing the texts of date-times and durations. MSPIUtilities.cpp has the conversions.

using platform::Instant;
using platform::MatchRange;
using platform::PosixRegularExpression;
using platform::require;
using platform::TimeZone;

namespace {

constexpr const char* kDateExpression = "(-?([[:digit:]]*)-([[:digit:]]*)-([[:digit:]]*))?";
constexpr const char* kTimeExpression =
    "([[:digit:]]*):([[:digit:]]*):([[:digit:]]*)(.([[:digit:]]*))?(((\\+|-)([[:digit:]]*):([[:digit:]]*))|Z)?";
constexpr const char* kDurationExpression =
    "P((([[:digit:]]*)Y)?(([[:digit:]]*)M)?(([[:digit:]]*)D)?)?T((([[:digit:]]*)H)?(([[:digit:]]*)M)?(([[:digit:]]*)S)?"
    ")?";

/// Sets the component to the number that the group matched, and returns the unit; returns 0 when the group matched
/// nothing.
MSPCUnitFlags takeNumber(const std::string& text, const MatchRange& group, std::int64_t& component,
                         MSPCUnitFlags unit) {
  if (!group.present()) return 0;
  component = platform::integerValue(group.in(text));
  return unit;
}

/// The position of the first match of the time expression: digits, a colon, digits and a colon. Searching with the
/// expression itself would take quadratic time on a long text.
std::optional<std::size_t> leftmostTime(std::string_view text) {
  const auto isDigit = [text](std::size_t at) { return text[at] >= '0' && text[at] <= '9'; };
  for (std::size_t colon = text.find(':'); colon != std::string_view::npos;) {
    std::size_t next = colon + 1;
    while (next < text.size() && isDigit(next)) ++next;
    if (next < text.size() && text[next] == ':') {
      std::size_t start = colon;
      while (start > 0 && isDigit(start - 1)) --start;
      return start;
    }
    colon = text.find(':', next);
  }
  return std::nullopt;
}

}  // namespace

// Parsing and printing.

MSPCUnitFlags MSPIUtilities::updateDateTimeComponentsFromISODateTime(MSPCDateComponents& record,
                                                                     std::string_view text) {
  if (const auto flags = scanUsualDateTime(record, text)) return *flags;
  return updateDateTimeComponentsByExpression(record, text);
}

MSPCUnitFlags MSPIUtilities::updateDateTimeComponentsByExpression(MSPCDateComponents& record, std::string_view text) {
  if (text.empty()) return kMSPCUnitsError;
  const std::string subject(text);
  MSPCUnitFlags flags = kMSPCUnitsError;
  std::size_t dateEnd = 0;
  static const PosixRegularExpression dateExpression(kDateExpression);
  if (const auto date = dateExpression.match(subject); date.size() > 4) {
    flags = takeNumber(subject, date[2], record.year, kMSPCYear) |
            takeNumber(subject, date[3], record.month, kMSPCMonth) | takeNumber(subject, date[4], record.day, kMSPCDay);
    dateEnd = date[0].end();
  }
  if (dateEnd >= subject.size()) return flags;

  const auto timeStart = leftmostTime(subject);
  if (!timeStart) return flags;
  const std::string timeText = subject.substr(*timeStart);
  static const PosixRegularExpression timeExpression(kTimeExpression);
  const auto time = timeExpression.match(timeText);
  if (time.size() < 11) return flags;
  if (flags == kMSPCUnitsError) flags = 0;
  if (dateEnd >= 1) {
    require(subject[dateEnd] == 'T', "");
    require(*timeStart + time[0].start == dateEnd + 1, "");
  }
  flags |= takeNumber(timeText, time[1], record.hour, kMSPCHour) |
           takeNumber(timeText, time[2], record.minute, kMSPCMinute) |
           takeNumber(timeText, time[3], record.second, kMSPCSecond);

  // The expression's "." before the fraction matches any character, so a "Z" right after the seconds is in the
  // fraction's group.
  const std::string_view fraction = time[4].in(timeText);
  const bool isFraction = fraction.starts_with('.') && fraction.size() >= 2;
  if (fraction == "Z" || (isFraction && time[6].in(timeText) == "Z")) {
    record.setUTC();
    return flags | kMSPCTimeZoneUTC;
  }
  if (isFraction) return flags;  // an offset behind a fraction is not read
  const bool isNegative = time[8].in(timeText) == "-";
  std::int64_t zoneHour = 0;
  std::int64_t zoneMinute = 0;
  if (takeNumber(timeText, time[9], zoneHour, kMSPCTimeZoneHour) != 0) {
    record.setTimeZoneHour(isNegative ? -zoneHour : zoneHour);
    flags |= kMSPCTimeZoneHour;
  }
  if (takeNumber(timeText, time[10], zoneMinute, kMSPCTimeZoneMinute) != 0) {
    record.setTimeZoneMinute(MSPCDateComponents::offsetMinutes(isNegative, zoneMinute));
    flags |= kMSPCTimeZoneMinute;
  }
  record.fixUTC();
  return flags;
}

MSPCUnitFlags MSPIUtilities::updateDateTimeComponentsFromISODuration(MSPCDateComponents& record,
                                                                     std::string_view text) {
  if (text.empty()) return kMSPCUnitsError;
  const std::string subject(text);
  static const PosixRegularExpression expression(kDurationExpression);
  const auto groups = expression.match(subject);
  if (groups.size() < 15) return kMSPCUnitsError;
  return takeNumber(subject, groups[3], record.year, kMSPCYear) |
         takeNumber(subject, groups[5], record.month, kMSPCMonth) |
         takeNumber(subject, groups[7], record.day, kMSPCDay) |
         takeNumber(subject, groups[10], record.hour, kMSPCHour) |
         takeNumber(subject, groups[12], record.minute, kMSPCMinute) |
         takeNumber(subject, groups[14], record.second, kMSPCSecond);
}

std::optional<MSPCDateComponents> MSPIUtilities::componentsFromISODateTime(std::string_view text) {
  MSPCDateComponents record;
  if (updateDateTimeComponentsFromISODateTime(record, text) == kMSPCUnitsError) return std::nullopt;
  return record;
}

std::optional<std::string> MSPIUtilities::stringFromComponents(const MSPCDateComponents& record,
                                                               MSPCUnitFlags unitFlags) {
  if (unitFlags == kMSPCUnitsError) return std::nullopt;
  std::string text;
  if ((unitFlags & (kMSPCDateTimeUnits | kMSPCTimeZoneUnits)) == kMSPCDateTimeUnits) {
    text = usualDateTime({record.year, record.month, record.day, record.hour, record.minute, record.second});
    if (!text.empty()) return text;
  }
  if ((unitFlags & kMSPCDateUnits) != 0) {
    if ((unitFlags & kMSPCYear) != 0) text = std::to_string(static_cast<std::int32_t>(record.year));
    if (!text.empty()) text += '-';
    if ((unitFlags & kMSPCMonth) != 0) appendTwoDigits(text, record.month);
    if (!text.empty()) text += '-';
    if ((unitFlags & kMSPCDay) != 0) appendTwoDigits(text, record.day);
  }
  if (!text.empty() && (unitFlags & (kMSPCTimeUnits | kMSPCTimeZoneUnits)) != 0) text += 'T';
  if ((unitFlags & kMSPCTimeUnits) != 0) {
    if ((unitFlags & kMSPCHour) != 0) appendTwoDigits(text, record.hour);
    if (!text.empty()) text += ':';
    if ((unitFlags & kMSPCMinute) != 0) appendTwoDigits(text, record.minute);
    if (!text.empty()) text += ':';
    if ((unitFlags & kMSPCSecond) != 0) appendTwoDigits(text, record.second);
  }
  if ((unitFlags & kMSPCTimeZoneUnits) == 0) return text;
  if ((unitFlags & kMSPCTimeZoneUTC) != 0 && record.isUTC()) return text + 'Z';

  const std::int64_t zoneHour = (unitFlags & kMSPCTimeZoneHour) != 0 ? record.timeZoneHour() : 0;
  const std::int64_t zoneMinute = (unitFlags & kMSPCTimeZoneMinute) != 0 ? record.timeZoneMinute() : 0;
  if (MSPCDateComponents::takesOffsetsAsMeant()) {
    const bool isNegative = zoneHour < 0 || zoneMinute < 0;
    return text + fmt::format("{}{:02d}:{:02d}", isNegative ? '-' : '+', std::abs(zoneHour), std::abs(zoneMinute));
  }
  fmt::format_to(std::back_inserter(text), "{:+03d}:{:02d}", static_cast<std::int32_t>(zoneHour),
                 static_cast<std::int32_t>(zoneMinute));
  return text;
}

Instant MSPIUtilities::dateFromComponents(const MSPCDateComponents& record) {
  return TimeZone::system().instantFromCivil(record.civil());
}

bool MSPIUtilities::isMspdiDuration(std::string_view text) {
  MSPCDateComponents record;
  return updateDateTimeComponentsFromISODuration(record, text) != kMSPCUnitsError;
}

std::int64_t MSPIUtilities::mspdiDurationInSecs(std::string_view text) {
  if (text.empty()) return -1;
  MSPCDateComponents record;
  const MSPCUnitFlags flags = updateDateTimeComponentsFromISODuration(record, text);
  require(flags != kMSPCUnitsError, "Failed to convert MSPDI duration: '{}'.", text);
  return record.secondsOfTime(flags);
}

// Classification.

bool MSPIUtilities::isIsoiDateTime(std::string_view text) {
  MSPCDateComponents record;
  const MSPCUnitFlags flags = updateDateTimeComponentsFromISODateTime(record, text);
  return flags != kMSPCUnitsError && flags != 0;
}

bool MSPIUtilities::isKvdxDateTime(std::string_view text) {
  MSPCDateComponents record;
  const MSPCUnitFlags flags = updateDateTimeComponentsFromISODateTime(record, text);
  return flags != kMSPCUnitsError && (flags & kMSPCTimeZoneUnits) != 0;
}

bool MSPIUtilities::isMspdiDateTime(std::string_view text) {
  MSPCDateComponents record;
  const MSPCUnitFlags flags = updateDateTimeComponentsFromISODateTime(record, text);
  return flags != kMSPCUnitsError && flags != 0 && (flags & kMSPCTimeZoneUnits) == 0;
}
