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

/// Date-times and durations, one form into another. Three forms are in use:
///
///   form    date-time                                                  duration
///   kvdx    ISO 8601 with "Z" or an offset, 2011-05-06T08:00:00+02:00  whole seconds in decimal text, 28800
///   MSPDI   ISO 8601 wall-clock time of the machine's zone, no zone    PT8H0M0S
///   MPP     an instant                                                 seconds
///
/// Text arguments: an empty text stands for none. Unless stated otherwise, none gives none, and a text that cannot be
/// parsed raises InvariantFailure. Only an empty text cannot be parsed, so that in practice every text gives something:
/// one without any date reads as the first moment of the year 1.
class MSPIUtilities {
 public:
  // Parsing and printing.

  /// Fills the components that an ISO 8601 date-time carries and leaves the others. The date may be missing, or the
  /// time; a fraction of a second is dropped, and an offset behind a fraction is not read.
  /// @return the units found; 0 when the text holds neither date nor time; kMSPCUnitsError for an empty text.
  /// @throws InvariantFailure (with an empty message) when a date is followed by anything but "T" and a time.
  static MSPCUnitFlags updateDateTimeComponentsFromISODateTime(MSPCDateComponents& record, std::string_view text);
  /// The same by the general expressions alone, which also read what the usual shape does not cover. Public so that
  /// the two can be compared.
  static MSPCUnitFlags updateDateTimeComponentsByExpression(MSPCDateComponents& record, std::string_view text);
  /// Fills the components of an ISO 8601 duration, of which only the "T" is required: "PT8H".
  /// @return the units found; kMSPCUnitsError when the text is no duration.
  static MSPCUnitFlags updateDateTimeComponentsFromISODuration(MSPCDateComponents& record, std::string_view text);

  /// None when the text is empty.
  static std::optional<MSPCDateComponents> componentsFromISODateTime(std::string_view text);
  /// The components named by the flags; separators depend only on something standing before them ("2011--" for a year
  /// alone). None for kMSPCUnitsError.
  static std::optional<std::string> stringFromComponents(const MSPCDateComponents& record, MSPCUnitFlags unitFlags);
  /// The instant at which the system zone's clock shows the record's clock fields; its own offset is not applied.
  static platform::Instant dateFromComponents(const MSPCDateComponents& record);

  static bool isMspdiDuration(std::string_view text);
  /// Hours, minutes and seconds of the duration in seconds; years, months and days are not counted. -1 for none.
  static std::int64_t mspdiDurationInSecs(std::string_view text);

  // Classification.

  /// A date, a time, or both (the doubled "i" is part of the name).
  static bool isIsoiDateTime(std::string_view text);
  /// The same with a zone.
  static bool isKvdxDateTime(std::string_view text);
  /// The same without a zone.
  static bool isMspdiDateTime(std::string_view text);

  // Date-times.

  /// A zone in the text is kept; without one the text is wall-clock time of the system zone.
  static std::optional<std::string> mspdiToKvdxDateTime(std::string_view mspdi);
  /// Seconds from midnight to the text's time, in decimal text; date and zone are ignored.
  static std::optional<std::string> mspdiToKvdxTimeOnly(std::string_view mspdi);
  /// The instant for people: "2011-05-06 06:00:00 +0000".
  static std::optional<std::string> mspdiDateTimeToString(std::string_view mspdi);
  /// @throws InvariantFailure also when the text has a zone, or neither date nor time.
  static std::optional<platform::Instant> mspdiToMppDateTime(std::string_view mspdi);
  /// Without a zone the text is wall-clock time of the system zone.
  static std::optional<platform::Instant> kvdxToMppDateTime(std::string_view kvdx);
  /// The instant that the text's MSPDI form names: mspdiToMppDateTime(kvdxToMspdiDateTime(kvdx)). Near a clock change
  /// it may be another one than kvdxToMppDateTime gives.
  static std::optional<platform::Instant> kvdxToMppDateTimeByWallClock(std::string_view kvdx);
  /// Without a zone the text is UTC (unlike kvdxToMppDateTime).
  /// @param calendarUnits the units to print; 0 for date and time. A zone is never printed.
  static std::optional<std::string> kvdxToMspdiDateTime(std::string_view kvdx, MSPCUnitFlags calendarUnits = 0);
  static std::optional<std::string> kvdxToMspdiDateOnly(std::string_view kvdx);
  /// The date at 00:00:00.
  static std::optional<std::string> kvdxToMspdiDateStartTime(std::string_view kvdx);
  /// The date at 23:59:59.
  static std::optional<std::string> kvdxToMspdiDateEndTime(std::string_view kvdx);
  /// Wall-clock time of the system zone with its offset, "Z" where that is 0.
  static std::optional<std::string> mppToKvdxDateTime(std::optional<platform::Instant> mpp);
  static std::optional<std::string> mppToMspdiDateTime(std::optional<platform::Instant> mpp);
  /// kvdxToMspdiDateStartTime(mppToKvdxDateTime(mpp)), and the same for the day's end.
  static std::optional<std::string> mppToMspdiDateStartTime(std::optional<platform::Instant> mpp);
  static std::optional<std::string> mppToMspdiDateEndTime(std::optional<platform::Instant> mpp);
  /// Forgets conversions that hold in one zone and at one time of the year only. For tests, which change them.
  static void forgetConversionsForTesting();
  /// -1, 0 or 1 as the first is earlier, equal or later. An empty text comes before any other.
  static int compareMspdiDateTime(std::string_view mspdi, std::string_view toMspdiDateTime);

  // Durations.

  static std::optional<std::string> mspdiToKvdxDuration(std::string_view mspdi);
  /// Seconds; 0 unless the text is "PT" with hours, minutes and seconds.
  static double mspdiToMppDuration(std::string_view mspdi);
  /// Seconds with two decimals: "28800.00".
  static std::string mppToKvdxDuration(double seconds);
  /// Seconds cut to 32-bit whole ones; hours are not folded into days, and every part of a negative duration is
  /// negative: -90 gives PT0H-1M-30S.
  static std::string mppToMspdiDuration(double seconds);
  /// From the text's leading whole number (0 without one).
  static std::optional<std::string> kvdxToMspdiDuration(std::optional<std::string_view> kvdx);
  /// "08:30:00" from 30600 seconds; hours go beyond 24.
  static std::string hourMinSecFromDuration(double seconds);

  // Working time, over texts. Their own zone is not applied: the clock fields are read in the system zone.

  /// The date-time, moved by an amount of working time, in kvdx form.
  /// @param advanceByKvdxDuration seconds in decimal text.
  static std::optional<std::string> isoDateTime(std::string_view text, std::string_view advanceByKvdxDuration,
                                                bool forward, const MSPEScheduleCalendar* calendar);
  /// The same by seconds.
  static std::optional<std::string> isoDateTime(std::string_view text, double advanceByDuration, bool forward,
                                                const MSPEScheduleCalendar* calendar);
  /// False also for an empty text.
  static bool isWorkingDay(std::string_view isoDateTime, const MSPEScheduleCalendar* calendar);
  /// Always 0.0: measuring is not provided on texts.
  static double durationFromIsoDateTimeStart(std::string_view start, std::string_view toIsoDateTimeFinish,
                                             const MSPEScheduleCalendar* calendar);

  // Debugging.

  /// Writes the document to "KVMSPDIFilterDump/<name>_dump(<number>).xml" below the folder, replacing an older dump.
  /// Nothing happens when the folder does not exist.
  /// @param workingFolderUrl a file location; any other raises InvariantFailure.
  /// @param dumpName none stands for "KVMSPDIFilter"; a number below 1 is left out of the name.
  static void dumpXMLDocument(const xml::Document& document, const platform::URL& workingFolderUrl,
                              std::optional<std::string_view> dumpName, std::int32_t dumpNumber = 0);
};

/// A new identifier of 11 ASCII characters, of which the first is one of "a" to "p" and the last five are "a".
std::string BFXMLCreateID();
