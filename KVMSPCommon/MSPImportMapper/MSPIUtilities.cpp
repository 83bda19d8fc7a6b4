#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"

#include <fmt/format.h>

#include <array>
#include <charconv>

#include "KVMSPCommon/MSPExportMapper/MSPExtensions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUsualDateTime.h"
#include "Platform/Base/Memo.h"
#include "Platform/System/AtomicFile.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Random.h"
#include "Platform/System/URL.h"
#include "Platform/Text/RegularExpression.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/Instant.h"
#include "Platform/Time/TimeZone.h"
#include "Platform/XML/XMLTree.h"

using platform::GregorianCalendar;
using platform::Instant;
using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;
using platform::orEmpty;
using platform::PosixRegularExpression;
using platform::require;
using platform::TimeZone;

// Conversions between the three forms. MSPIUtilitiesTexts.cpp reads and prints the texts.

namespace {

constexpr const char* kMspdiDurationExpression = "PT([[:digit:]]*)H([[:digit:]]*)M([[:digit:]]*)S";

/// Whether a clock reading is in the years 1000 to 9999. Printing and parsing such a reading gives the same reading, so
/// two conversions in a row can skip the text between them.
bool isFourDigitYear(std::int64_t civilSeconds) {
  static const std::int64_t first = GregorianCalendar::secondsFromCivil({1000, 1, 1, 0, 0, 0});
  static const std::int64_t behind = GregorianCalendar::secondsFromCivil({10000, 1, 1, 0, 0, 0});
  return civilSeconds >= first && civilSeconds < behind;
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

/// The date of `date` followed by `time`. Fast path: cut it out of the MSPDI text; otherwise convert through kvdx.
std::optional<std::string> timeOfDay(std::optional<Instant> date, std::string_view time,
                                     std::optional<std::string> (*fromKvdx)(std::string_view)) {
  constexpr std::size_t kDateLength = 10;
  auto text = MSPIUtilities::mppToMspdiDateTime(date);
  if (!text || text->size() != kDateLength + time.size()) {
    return fromKvdx(orEmpty(MSPIUtilities::mppToKvdxDateTime(date)));
  }
  text->replace(kDateLength, time.size(), time);
  return text;
}

/// The components of an MSPDI text. Raises InvariantFailure when it cannot be parsed.
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

/// The system zone's clock reading at the instant, labelled with the zone's offset.
MSPCDateComponents systemComponents(Instant instant) {
  MSPCDateComponents record;
  record.setCivil(TimeZone::system().civilFromInstant(instant));
  record.forceSystemTimezoneforDate(instant);
  return record;
}

/// Caches of conversions. They are often repeated: tasks of a plan start and end at the same few hours, and each date
/// is written for a task, its assignments and its baseline.
struct Conversions {
  platform::Memo<std::string, std::optional<Instant>, std::hash<std::string_view>> instants;
  platform::Memo<std::string, std::optional<std::string>, std::hash<std::string_view>> texts;
  platform::Memo<double, std::optional<std::string>> instantsTexts;
};

Conversions& conversions() {
  static Conversions ofTheProcess;
  return ofTheProcess;
}

}  // namespace

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
  return fmt::format("{}", record.secondsOfTime(flags));
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
  return record.instant();
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

std::optional<std::string> MSPIUtilities::kvdxToMspdiDateStartTime(std::string_view kvdx) {
  auto date = kvdxToMspdiDateOnly(kvdx);
  if (date) date->append("T00:00:00");
  return date;
}

std::optional<std::string> MSPIUtilities::kvdxToMspdiDateEndTime(std::string_view kvdx) {
  auto date = kvdxToMspdiDateOnly(kvdx);
  if (date) date->append("T23:59:59");
  return date;
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
    const bool isAsMeant = MSPCDateComponents::takesOffsetsAsMeant();
    if (isFourDigitYear(clock) && (isAsMeant || label % 60 >= 0)) {
      const std::int64_t offset = zone.secondsFromGMT(zone.instantFromCivilSeconds(clock));
      const std::int64_t moved = isAsMeant ? clock : clock - label * kSecondsPerMinute + offset;
      std::string text = usualDateTime(GregorianCalendar::civilFromSeconds(moved));
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

std::optional<std::string> MSPIUtilities::mppToMspdiDateStartTime(std::optional<Instant> mpp) {
  return timeOfDay(mpp, "T00:00:00", &MSPIUtilities::kvdxToMspdiDateStartTime);
}

std::optional<std::string> MSPIUtilities::mppToMspdiDateEndTime(std::optional<Instant> mpp) {
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
  // Parse both anyway, so that an unreadable text still raises.
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
  static_cast<void>(file.commitReplacing(path));  // failing to write a debugging aid is not an error
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
