#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

#include "KVMSPCommon/MSPExportMapper/MSPExtensions.h"
#include "Platform/Exceptions.h"
#include "Platform/FileSystem.h"
#include "Platform/Memo.h"
#include "Platform/Random.h"
#include "Platform/RegularExpression.h"
#include "Platform/Texts.h"
#include "Platform/TimeZone.h"
#include "Platform/URL.h"
#include "Platform/XMLTree.h"

using platform::GregorianCalendar;
using platform::Instant;
using platform::MatchRange;
using platform::orEmpty;
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
constexpr const char* kMspdiDurationExpression = "PT([[:digit:]]*)H([[:digit:]]*)M([[:digit:]]*)S";

constexpr std::int64_t kSecondsPerHour = 3600;
constexpr std::int64_t kSecondsPerMinute = 60;

/// Puts the number that the group matched into the component; gives its unit, or 0 when the group matched nothing.
MSPCUnitFlags takeNumber(const std::string& text, const MatchRange& group, std::int64_t& component,
                         MSPCUnitFlags unit) {
  if (!group.present()) return 0;
  component = platform::integerValue(group.in(text));
  return unit;
}

/// Where the time expression matches first: at digits, a colon, digits and a colon. To let the expression look for it
/// would take a time that grows with the square of a long text's length.
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

void setUTCDesignator(MSPCDateComponents& record) {
  record.setTimeZoneHour(0);
  record.setTimeZoneMinute(0);
  record.setIsUTC(true);
}

/// Two decimal digits at the position; -1 when there are none.
int twoDigits(std::string_view text, std::size_t at) {
  const int tens = text[at] - '0';
  const int units = text[at + 1] - '0';
  return tens >= 0 && tens <= 9 && units >= 0 && units <= 9 ? tens * 10 + units : -1;
}

/// Reads YYYY-MM-DD, alone or with Thh:mm:ss, and that alone or with "Z" or an offset ±hh:mm, as nearly all date-times
/// are written. None for every other text; the record is then untouched. The expressions take some 3 microseconds a
/// text, this 0.05.
std::optional<MSPCUnitFlags> scanUsualDateTime(MSPCDateComponents& record, std::string_view text) {
  constexpr std::size_t kDateLength = 10;
  constexpr std::size_t kLocalLength = 19;
  constexpr std::size_t kUTCLength = 20;
  constexpr std::size_t kOffsetLength = 25;
  const std::size_t length = text.size();
  if (length != kDateLength && length != kLocalLength && length != kUTCLength && length != kOffsetLength) {
    return std::nullopt;
  }
  const int century = twoDigits(text, 0);
  const int yearOfCentury = twoDigits(text, 2);
  const int month = twoDigits(text, 5);
  const int day = twoDigits(text, 8);
  if (text[4] != '-' || text[7] != '-' || (century | yearOfCentury | month | day) < 0) return std::nullopt;

  MSPCUnitFlags flags = kMSPCDateUnits;
  if (length != kDateLength) {
    const int hour = twoDigits(text, 11);
    const int minute = twoDigits(text, 14);
    const int second = twoDigits(text, 17);
    if (text[10] != 'T' || text[13] != ':' || text[16] != ':' || (hour | minute | second) < 0) return std::nullopt;
    flags = kMSPCDateTimeUnits;
    if (length == kUTCLength) {
      if (text[19] != 'Z') return std::nullopt;
      setUTCDesignator(record);
      flags |= kMSPCTimeZoneUTC;
    } else if (length == kOffsetLength) {
      const int zoneHour = twoDigits(text, 20);
      const int zoneMinute = twoDigits(text, 23);
      if ((text[19] != '+' && text[19] != '-') || text[22] != ':' || (zoneHour | zoneMinute) < 0) return std::nullopt;
      record.setTimeZoneHour(text[19] == '-' ? -zoneHour : zoneHour);
      record.setTimeZoneMinute(zoneMinute);
      record.fixUTC();
      flags |= kMSPCTimeZoneHour | kMSPCTimeZoneMinute;
    } else {
      record.fixUTC();
    }
    record.hour = hour;
    record.minute = minute;
    record.second = second;
  }
  record.year = century * 100 + yearOfCentury;
  record.month = month;
  record.day = day;
  return flags;
}

bool isWithin(std::int64_t number, std::int64_t lowest, std::int64_t highest) {
  return number >= lowest && number <= highest;
}

void putTwoDigits(char* at, std::int64_t number) {
  at[0] = static_cast<char>('0' + number / 10);
  at[1] = static_cast<char>('0' + number % 10);
}

/// YYYY-MM-DDThh:mm:ss, when the components are those of a real clock reading; "" otherwise.
std::string usualDateTime(const platform::CivilTime& civil) {
  if (!isWithin(civil.year, 1000, 9999) || !isWithin(civil.month, 0, 99) || !isWithin(civil.day, 0, 99) ||
      !isWithin(civil.hour, 0, 99) || !isWithin(civil.minute, 0, 99) || !isWithin(civil.second, 0, 99)) {
    return "";
  }
  std::string text = "0000-00-00T00:00:00";
  putTwoDigits(text.data(), civil.year / 100);
  putTwoDigits(&text[2], civil.year % 100);
  putTwoDigits(&text[5], civil.month);
  putTwoDigits(&text[8], civil.day);
  putTwoDigits(&text[11], civil.hour);
  putTwoDigits(&text[14], civil.minute);
  putTwoDigits(&text[17], civil.second);
  return text;
}

/// Whether a clock reading is in the years 1000 to 9999. Its text reads back as what it was printed from, so that the
/// text can be left out between two conversions.
bool isFourDigitYear(std::int64_t civilSeconds) {
  static const std::int64_t first = GregorianCalendar::secondsFromCivil({1000, 1, 1, 0, 0, 0});
  static const std::int64_t behind = GregorianCalendar::secondsFromCivil({10000, 1, 1, 0, 0, 0});
  return civilSeconds >= first && civilSeconds < behind;
}

/// Appends the number with at least two digits.
void appendTwoDigits(std::string& text, std::int64_t number) {
  if (isWithin(number, 0, 99)) {
    text.append(2, '0');
    putTwoDigits(&text[text.size() - 2], number);
  } else {
    fmt::format_to(std::back_inserter(text), "{:02d}", static_cast<std::int32_t>(number));
  }
}

std::string mspdiDuration(std::int64_t wholeSeconds) {
  const std::int64_t seconds = wholeSeconds % kSecondsPerMinute;
  const std::int64_t totalMinutes = (wholeSeconds - seconds) / kSecondsPerMinute;
  const std::int64_t hours = totalMinutes / 60;
  constexpr std::size_t kDigits = 20;
  std::array<char, 3 * kDigits + 5> text{'P', 'T'};
  char* at = &text[2];
  const auto append = [&at](std::int64_t number, char unit) {
    at = std::to_chars(at, at + kDigits, number).ptr;
    *at++ = unit;
  };
  append(hours, 'H');
  append(totalMinutes - hours * 60, 'M');
  append(seconds, 'S');
  return {text.data(), at};
}

/// The text, made of the date's kvdx form, with the date alone and a time of day; shorter where the date's MSPDI form
/// is the usual one.
std::string timeOfDay(Instant date, std::string_view time, std::string (*fromKvdx)(std::string_view)) {
  constexpr std::size_t kDateLength = 10;
  auto text = MSPIUtilities::mppToMspdiDateTime(date);
  if (!text || text->size() != kDateLength + time.size()) {
    return fromKvdx(orEmpty(MSPIUtilities::mppToKvdxDateTime(date)));
  }
  return std::move(text->replace(kDateLength, time.size(), time));
}

/// The record of an MSPDI text; raises the message when it cannot be made.
MSPCDateComponents mspdiComponents(std::string_view mspdi, MSPCUnitFlags& flags) {
  MSPCDateComponents record;
  flags = MSPIUtilities::updateDateTimeComponentsFromISODateTime(record, mspdi);
  require(flags != kMSPCUnitsError, "Failed to make MSPCDateComponents from MSPDI date-time: '{}'.", mspdi);
  return record;
}

MSPCDateComponents kvdxComponents(std::string_view kvdx, MSPCUnitFlags& flags) {
  MSPCDateComponents record;
  flags = MSPIUtilities::updateDateTimeComponentsFromISODateTime(record, kvdx);
  require(flags != kMSPCUnitsError, "Failed to make MSPCDateComponents from KVDX date-time: '{}'.", kvdx);
  return record;
}

/// What the system zone's clock shows at the instant, labelled with the zone's offset.
MSPCDateComponents systemComponents(Instant instant) {
  MSPCDateComponents record;
  record.setCivil(TimeZone::system().civilFromInstant(instant));
  record.forceSystemTimezoneforDate(instant);
  return record;
}

/// Conversions that an export is asked for again and again: a plan's tasks start and end at the same few hours, and
/// each date is written for a task, its assignments and its baseline.
struct Conversions {
  platform::Memo<std::string, std::optional<Instant>, std::hash<std::string_view>> instants;
  platform::Memo<std::string, std::optional<std::string>, std::hash<std::string_view>> texts;
  platform::Memo<double, std::optional<std::string>> instantsTexts;
};

Conversions& conversions() {
  static Conversions ofTheProcess;
  return ofTheProcess;
}

/// Hours, minutes and seconds that the flags name, in seconds.
std::int64_t secondsOfTime(const MSPCDateComponents& record, MSPCUnitFlags flags) {
  platform::Wide seconds = 0;
  if ((flags & kMSPCHour) != 0) seconds += static_cast<platform::Wide>(record.hour) * kSecondsPerHour;
  if ((flags & kMSPCMinute) != 0) seconds += static_cast<platform::Wide>(record.minute) * kSecondsPerMinute;
  if ((flags & kMSPCSecond) != 0) seconds += record.second;
  return platform::saturated(seconds);
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

  // The fraction's first character is a wildcard, so that a bare "Z" behind the seconds lands in the fraction's group.
  const std::string_view fraction = time[4].in(timeText);
  const bool isFraction = fraction.starts_with('.') && fraction.size() >= 2;
  if (fraction == "Z" || (isFraction && time[6].in(timeText) == "Z")) {
    setUTCDesignator(record);
    return flags | kMSPCTimeZoneUTC;
  }
  if (isFraction) return flags;  // an offset behind a fraction is not read
  std::int64_t zoneHour = 0;
  std::int64_t zoneMinute = 0;
  if (takeNumber(timeText, time[9], zoneHour, kMSPCTimeZoneHour) != 0) {
    record.setTimeZoneHour(time[8].in(timeText) == "-" ? -zoneHour : zoneHour);
    flags |= kMSPCTimeZoneHour;
  }
  if (takeNumber(timeText, time[10], zoneMinute, kMSPCTimeZoneMinute) != 0) {
    record.setTimeZoneMinute(zoneMinute);
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
  return secondsOfTime(record, flags);
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

// Date-times.

std::optional<std::string> MSPIUtilities::mspdiToKvdxDateTime(std::string_view mspdi) {
  if (mspdi.empty()) return std::nullopt;
  MSPCUnitFlags flags = 0;
  MSPCDateComponents record = mspdiComponents(mspdi, flags);
  if ((flags & kMSPCTimeZoneUnits) == 0) flags = record.forceSystemTimezoneforDate(std::nullopt);
  return stringFromComponents(record, flags | kMSPCTimeZoneUnits);
}

std::optional<std::string> MSPIUtilities::mspdiToKvdxTimeOnly(std::string_view mspdi) {
  if (mspdi.empty()) return std::nullopt;
  MSPCDateComponents record;
  const MSPCUnitFlags flags = updateDateTimeComponentsFromISODateTime(record, mspdi);
  require(flags != kMSPCUnitsError, "Failed to get time only value from MSPDI date-time: '{}'.", mspdi);
  return fmt::format("{}", secondsOfTime(record, flags));
}

std::optional<std::string> MSPIUtilities::mspdiDateTimeToString(std::string_view mspdi) {
  if (mspdi.empty()) return std::nullopt;
  MSPCUnitFlags flags = 0;
  const Instant instant = dateFromComponents(mspdiComponents(mspdi, flags));
  const auto utc = GregorianCalendar::civilFromSeconds(platform::truncated<std::int64_t>(instant.seconds));
  return fmt::format("{:04d}-{:02d}-{:02d} {:02d}:{:02d}:{:02d} +0000", utc.year, utc.month, utc.day, utc.hour,
                     utc.minute, utc.second);
}

std::optional<Instant> MSPIUtilities::mspdiToMppDateTime(std::string_view mspdi) {
  if (mspdi.empty()) return std::nullopt;
  MSPCUnitFlags flags = 0;
  const MSPCDateComponents record = mspdiComponents(mspdi, flags);
  require(flags != 0 && (flags & kMSPCTimeZoneUnits) == 0, "Not a valid MSPDI date-time: '{}' (time zone?).", mspdi);
  return dateFromComponents(record);
}

std::optional<Instant> MSPIUtilities::kvdxToMppDateTime(std::string_view kvdx) {
  if (kvdx.empty()) return std::nullopt;
  MSPCUnitFlags flags = 0;
  const MSPCDateComponents record = kvdxComponents(kvdx, flags);
  if ((flags & kMSPCTimeZoneUnits) == 0) return dateFromComponents(record);
  const std::int64_t clock = GregorianCalendar::secondsFromCivil(record.civil());
  return Instant{
      static_cast<double>(platform::saturated(static_cast<platform::Wide>(clock) - record.secondsFromGMT()))};
}

std::optional<Instant> MSPIUtilities::kvdxToMppDateTimeByWallClock(std::string_view kvdx) {
  if (kvdx.empty()) return std::nullopt;
  return conversions().instants.get(kvdx, [kvdx]() -> std::optional<Instant> {
    MSPCUnitFlags flags = 0;
    MSPCDateComponents record = kvdxComponents(kvdx, flags);
    record.convertToSystemTimezone();
    const std::int64_t clock = GregorianCalendar::secondsFromCivil(record.civil());
    if (isFourDigitYear(clock)) return TimeZone::system().instantFromCivilSeconds(clock);
    return mspdiToMppDateTime(orEmpty(stringFromComponents(record, kMSPCDateTimeUnits)));
  });
}

std::optional<std::string> MSPIUtilities::kvdxToMspdiDateTime(std::string_view kvdx, MSPCUnitFlags calendarUnits) {
  if (kvdx.empty()) return std::nullopt;
  if (calendarUnits == 0) {
    return conversions().texts.get(kvdx, [kvdx] { return kvdxToMspdiDateTime(kvdx, kMSPCAllUnits); });
  }
  MSPCUnitFlags flags = 0;
  MSPCDateComponents record = kvdxComponents(kvdx, flags);
  const MSPCUnitFlags wanted = calendarUnits & ~kMSPCTimeZoneUnits;
  return stringFromComponents(record, wanted & record.convertToSystemTimezone());
}

std::optional<std::string> MSPIUtilities::kvdxToMspdiDateOnly(std::string_view kvdx) {
  return kvdxToMspdiDateTime(kvdx, kMSPCDateUnits);
}

std::string MSPIUtilities::kvdxToMspdiDateStartTime(std::string_view kvdx) {
  return fmt::format("{}T00:00:00", platform::orNull(kvdxToMspdiDateOnly(kvdx)));
}

std::string MSPIUtilities::kvdxToMspdiDateEndTime(std::string_view kvdx) {
  return fmt::format("{}T23:59:59", platform::orNull(kvdxToMspdiDateOnly(kvdx)));
}

std::optional<std::string> MSPIUtilities::mppToKvdxDateTime(std::optional<Instant> mpp) {
  if (!mpp) return std::nullopt;
  return stringFromComponents(systemComponents(*mpp), kMSPCAllUnits);
}

std::optional<std::string> MSPIUtilities::mppToMspdiDateTime(std::optional<Instant> mpp) {
  if (!mpp) return std::nullopt;
  return conversions().instantsTexts.get(mpp->seconds, [mpp]() -> std::optional<std::string> {
    const TimeZone& zone = TimeZone::system();
    const std::int64_t clock = zone.civilSecondsFromInstant(*mpp);
    const std::int64_t label = MSPCDateComponents::systemOffset(*mpp) / kSecondsPerMinute;
    if (isFourDigitYear(clock) && label % 60 >= 0) {
      const std::int64_t offset = zone.secondsFromGMT(zone.instantFromCivilSeconds(clock));
      std::string text = usualDateTime(GregorianCalendar::civilFromSeconds(clock - label * kSecondsPerMinute + offset));
      if (!text.empty()) return text;
    }
    return kvdxToMspdiDateTime(orEmpty(mppToKvdxDateTime(mpp)));
  });
}

void MSPIUtilities::forgetConversionsForTesting() {
  conversions().instants.forget();
  conversions().texts.forget();
  conversions().instantsTexts.forget();
}

std::string MSPIUtilities::mppToMspdiDateStartTime(Instant mpp) {
  return timeOfDay(mpp, "T00:00:00", &MSPIUtilities::kvdxToMspdiDateStartTime);
}

std::string MSPIUtilities::mppToMspdiDateEndTime(Instant mpp) {
  return timeOfDay(mpp, "T23:59:59", &MSPIUtilities::kvdxToMspdiDateEndTime);
}

int MSPIUtilities::compareMspdiDateTime(std::string_view mspdi, std::string_view toMspdiDateTime) {
  if (mspdi.empty() || toMspdiDateTime.empty()) {
    return (mspdi.empty() ? 0 : 1) - (toMspdiDateTime.empty() ? 0 : 1);
  }
  MSPCUnitFlags flags = 0;
  const Instant first = dateFromComponents(mspdiComponents(mspdi, flags));
  const Instant second = dateFromComponents(mspdiComponents(toMspdiDateTime, flags));
  return first < second ? -1 : second < first ? 1 : 0;
}

// Durations.

std::optional<std::string> MSPIUtilities::mspdiToKvdxDuration(std::string_view mspdi) {
  const std::int64_t seconds = mspdiDurationInSecs(mspdi);
  if (seconds < 0) return std::nullopt;
  return fmt::format("{}", seconds);
}

double MSPIUtilities::mspdiToMppDuration(std::string_view mspdi) {
  if (mspdi.empty()) return 0.0;
  const std::string subject(mspdi);
  static const PosixRegularExpression expression(kMspdiDurationExpression);
  const auto groups = expression.match(subject);
  if (groups.size() < 4 || groups[0].start != 0) return 0.0;
  const auto number = [&](std::size_t group) {
    return static_cast<double>(
        platform::truncated<std::int32_t>(static_cast<double>(platform::integerValue(groups[group].in(subject)))));
  };
  return number(1) * kSecondsPerHour + number(2) * kSecondsPerMinute + number(3);
}

std::string MSPIUtilities::mppToKvdxDuration(double seconds) { return platform::fixedPoint(seconds, 2); }

std::string MSPIUtilities::mppToMspdiDuration(double seconds) {
  return mspdiDuration(platform::truncated<std::int32_t>(seconds));
}

std::optional<std::string> MSPIUtilities::kvdxToMspdiDuration(std::optional<std::string_view> kvdx) {
  if (!kvdx) return std::nullopt;
  return mspdiDuration(platform::integerValue(*kvdx));
}

std::string MSPIUtilities::hourMinSecFromDuration(double seconds) {
  const auto whole = platform::truncated<std::int64_t>(seconds);
  const std::int64_t hours = whole / kSecondsPerHour;
  const std::int64_t rest = whole - hours * kSecondsPerHour;
  const std::int64_t minutes = rest / kSecondsPerMinute;
  return fmt::format("{:02d}:{:02d}:{:02d}", hours, minutes, rest - minutes * kSecondsPerMinute);
}

// Working time, over texts.

std::optional<std::string> MSPIUtilities::isoDateTime(std::string_view text, std::string_view advanceByKvdxDuration,
                                                      bool forward, const MSPEScheduleCalendar* calendar) {
  return isoDateTime(text, static_cast<double>(platform::integerValue(advanceByKvdxDuration)), forward, calendar);
}

std::optional<std::string> MSPIUtilities::isoDateTime(std::string_view text, double advanceByDuration, bool forward,
                                                      const MSPEScheduleCalendar* calendar) {
  const auto record = componentsFromISODateTime(text);
  if (!record) return std::nullopt;
  return mppToKvdxDateTime(
      MSPExtensions::dateAdvancedByDuration(dateFromComponents(*record), advanceByDuration, forward, calendar));
}

bool MSPIUtilities::isWorkingDay(std::string_view isoDateTime, const MSPEScheduleCalendar* calendar) {
  const auto record = componentsFromISODateTime(isoDateTime);
  return record && MSPExtensions::isWorkingDayInCalendar(dateFromComponents(*record), calendar);
}

double MSPIUtilities::durationFromIsoDateTimeStart(std::string_view start, std::string_view toIsoDateTimeFinish,
                                                   const MSPEScheduleCalendar* /*calendar*/) {
  // The texts are parsed all the same: one that cannot be read is told.
  if (componentsFromISODateTime(start)) static_cast<void>(componentsFromISODateTime(toIsoDateTimeFinish));
  return 0.0;
}

// Debugging.

void MSPIUtilities::dumpXMLDocument(const xml::Document& document, const platform::URL& workingFolderUrl,
                                    std::optional<std::string_view> dumpName, std::int32_t dumpNumber) {
  require(workingFolderUrl.isFileURL(),
          "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: '{}'",
          workingFolderUrl.absoluteString());
  if (!platform::isDirectory(workingFolderUrl.path())) return;

  const std::string dumpFolder = platform::appendPathComponent(workingFolderUrl.path(), "KVMSPDIFilterDump");
  if (!platform::fileExists(dumpFolder)) platform::createDirectories(dumpFolder);
  require(platform::isDirectory(dumpFolder),
          "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to locate dump folder: '{}'.", dumpFolder);

  const std::string number = dumpNumber >= 1 ? fmt::format("({})", dumpNumber) : "";
  const std::string path = platform::appendPathComponent(
      dumpFolder, fmt::format("{}_dump{}.xml", dumpName.value_or("KVMSPDIFilter"), number));
  platform::AtomicFile file(path);
  document.serialize([&file](std::string_view piece) { file.append(piece); });
  static_cast<void>(file.commitReplacing(path));  // a debugging aid that could not be written is no failure
}

std::string BFXMLCreateID() {
  constexpr std::string_view kAlphabet = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
  constexpr std::size_t kLength = 11;
  std::uint32_t value = platform::randomValue();
  std::string id(1, kAlphabet[value % 16]);
  value >>= 4;
  while (id.size() < kLength) {
    id += kAlphabet[value % kAlphabet.size()];
    value >>= 6;
  }
  platform::requireOrEndProcess(value == 0, "value == 0");
  return id;
}
