#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "KVMSPCommon/MSPCDateComponents.h"
#include "Platform/Time/Instant.h"

class MSPEScheduleCalendar;

namespace platform {
class URL;
}

namespace xml {
class Document;
}

/// Converts date-times and durations between three forms:
///
///   form    date-time                                                  duration
///   kvdx    ISO 8601 with "Z" or an offset, 2011-05-06T08:00:00+02:00  whole seconds in decimal text, 28800
///   MSPDI   ISO 8601 wall-clock time of the machine's zone, no zone    PT8H0M0S
///   MPP     an instant                                                 seconds
///
/// For text arguments, an empty text means none. Unless stated otherwise, none gives none, and a text that cannot be
/// parsed raises InvariantFailure. But only an empty text cannot be parsed: every other gives some date, and one
/// without a date the first moment of the year 1. In the zone Europe/Berlin:
///
///   kvdxToMspdiDateTime("2011-05-06T06:00:00Z")     "2011-05-06T08:00:00"
///   mspdiToKvdxDateTime("2011-05-06T08:00:00")      "2011-05-06T08:00:00+02:00"
///   kvdxToMspdiDuration("28800")                    "PT8H0M0S"
class MSPIUtilities {
 public:
  // Parsing and printing.

  /// Sets the components that an ISO 8601 date-time has, and leaves the others unchanged. Either the date or the time
  /// may be missing. A fraction of a second is dropped; an offset after a fraction is not read, but "Z" is.
  /// @return the units found; 0 when the text has neither date nor time; kMSPCUnitsError for an empty text.
  /// @throws InvariantFailure (with an empty message) when a date is followed by anything but "T" and a time.
  static MSPCUnitFlags updateDateTimeComponentsFromISODateTime(MSPCDateComponents& record, std::string_view text);
  /// The same without the fast path for texts of the usual shape. Public so that tests can compare the two.
  static MSPCUnitFlags updateDateTimeComponentsByExpression(MSPCDateComponents& record, std::string_view text);
  /// Sets the components of an ISO 8601 duration such as "PT8H"; only "P" and "T" are required.
  /// @return the units found; kMSPCUnitsError when the text is not a duration.
  static MSPCUnitFlags updateDateTimeComponentsFromISODuration(MSPCDateComponents& record, std::string_view text);

  /// None when the text is empty.
  static std::optional<MSPCDateComponents> componentsFromISODateTime(std::string_view text);
  /// The text of the components that the flags name. A separator is written whenever something precedes it, even if
  /// nothing follows: "2011--" for a year alone. None for kMSPCUnitsError.
  static std::optional<std::string> stringFromComponents(const MSPCDateComponents& record, MSPCUnitFlags unitFlags);
  /// The instant at which the system zone's clock shows the record's clock fields. The record's own offset is ignored.
  static platform::Instant dateFromComponents(const MSPCDateComponents& record);

  static bool isMspdiDuration(std::string_view text);
  /// The hours, minutes and seconds of the duration, in seconds; its years, months and days are ignored. -1 for none.
  static std::int64_t mspdiDurationInSecs(std::string_view text);

  // Classification.

  /// Whether the text has a date, a time, or both. (The doubled "i" is part of the name.)
  static bool isIsoiDateTime(std::string_view text);
  /// The same, with a zone.
  static bool isKvdxDateTime(std::string_view text);
  /// The same, without a zone.
  static bool isMspdiDateTime(std::string_view text);

  // Date-times.

  /// Keeps a zone in the text; a text without one is wall-clock time of the system zone.
  static std::optional<std::string> mspdiToKvdxDateTime(std::string_view mspdi);
  /// The seconds from midnight to the text's time, as decimal text; date and zone are ignored.
  static std::optional<std::string> mspdiToKvdxTimeOnly(std::string_view mspdi);
  /// The instant as a text for people: "2011-05-06 06:00:00 +0000".
  static std::optional<std::string> mspdiDateTimeToString(std::string_view mspdi);
  /// @throws InvariantFailure also when the text has a zone, or neither date nor time.
  static std::optional<platform::Instant> mspdiToMppDateTime(std::string_view mspdi);
  /// A text without a zone is wall-clock time of the system zone.
  static std::optional<platform::Instant> kvdxToMppDateTime(std::string_view kvdx);
  /// The instant of the text's MSPDI form: mspdiToMppDateTime(kvdxToMspdiDateTime(kvdx)). Differs from
  /// kvdxToMppDateTime() when clocks show a time twice: in Europe/Berlin, "2011-10-30T00:30:00Z" (02:30 for the first
  /// time) gives 01:30:00Z, when clocks show 02:30 again.
  static std::optional<platform::Instant> kvdxToMppDateTimeByWallClock(std::string_view kvdx);
  /// A text without a zone is UTC (unlike in kvdxToMppDateTime()).
  /// @param calendarUnits the units to print; 0 for date and time. A zone is never printed.
  static std::optional<std::string> kvdxToMspdiDateTime(std::string_view kvdx, MSPCUnitFlags calendarUnits = 0);
  static std::optional<std::string> kvdxToMspdiDateOnly(std::string_view kvdx);
  /// The date at 00:00:00.
  static std::optional<std::string> kvdxToMspdiDateStartTime(std::string_view kvdx);
  /// The date at 23:59:59.
  static std::optional<std::string> kvdxToMspdiDateEndTime(std::string_view kvdx);
  /// Wall-clock time of the system zone, with its offset; with "Z" when the offset is 0.
  static std::optional<std::string> mppToKvdxDateTime(std::optional<platform::Instant> mpp);
  static std::optional<std::string> mppToMspdiDateTime(std::optional<platform::Instant> mpp);
  /// kvdxToMspdiDateStartTime(mppToKvdxDateTime(mpp)), and the same for the day's end.
  static std::optional<std::string> mppToMspdiDateStartTime(std::optional<platform::Instant> mpp);
  static std::optional<std::string> mppToMspdiDateEndTime(std::optional<platform::Instant> mpp);
  /// Clears the cached conversions, which depend on the system zone and the current date. For tests, which change
  /// these.
  static void forgetConversionsForTesting();
  /// -1, 0 or 1 when the first is earlier, equal or later. An empty text is earlier than any other.
  static int compareMspdiDateTime(std::string_view mspdi, std::string_view toMspdiDateTime);

  // Durations.

  static std::optional<std::string> mspdiToKvdxDuration(std::string_view mspdi);
  /// Seconds; 0 unless the text is "PT" with hours, minutes and seconds.
  static double mspdiToMppDuration(std::string_view mspdi);
  /// Seconds with two decimals: "28800.00".
  static std::string mppToKvdxDuration(double seconds);
  /// The seconds are first cut to a 32-bit whole number. Hours are not converted to days, and every part of a negative
  /// duration is negative: 90000 gives PT25H0M0S, -90 gives PT0H-1M-30S.
  static std::string mppToMspdiDuration(double seconds);
  /// Uses the whole number that the text begins with; 0 when there is none.
  static std::optional<std::string> kvdxToMspdiDuration(std::optional<std::string_view> kvdx);
  /// 30600 gives "08:30:00"; 90000 gives "25:00:00".
  static std::string hourMinSecFromDuration(double seconds);

  // Working time between texts. A zone in the text is ignored: the clock fields are read in the system zone.

  /// The date-time moved by an amount of working time, in kvdx form.
  /// @param advanceByKvdxDuration seconds in decimal text.
  static std::optional<std::string> isoDateTime(std::string_view text, std::string_view advanceByKvdxDuration,
                                                bool forward, const MSPEScheduleCalendar* calendar);
  /// The same by seconds.
  static std::optional<std::string> isoDateTime(std::string_view text, double advanceByDuration, bool forward,
                                                const MSPEScheduleCalendar* calendar);
  /// False for an empty text.
  static bool isWorkingDay(std::string_view isoDateTime, const MSPEScheduleCalendar* calendar);
  /// Always 0.0: measuring is not implemented for texts. Unreadable texts still raise.
  static double durationFromIsoDateTimeStart(std::string_view start, std::string_view toIsoDateTimeFinish,
                                             const MSPEScheduleCalendar* calendar);

  // Debugging.

  /// Writes the document to "KVMSPDIFilterDump/<name>_dump(<number>).xml" below the folder, replacing an older dump.
  /// Nothing happens when the folder does not exist.
  /// @param workingFolderUrl a file location; any other raises InvariantFailure.
  /// @param dumpName none means "KVMSPDIFilter".
  /// @param dumpNumber left out of the name when below 1.
  static void dumpXMLDocument(const xml::Document& document, const platform::URL& workingFolderUrl,
                              std::optional<std::string_view> dumpName, std::int32_t dumpNumber = 0);
};

/// A new identifier of 11 ASCII characters, of which the first is one of "a" to "p" and the last five are "a".
std::string BFXMLCreateID();
