#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Time/Instant.h"

/// Converts date-times between forms by date patterns, as an alternative to MSPIUtilities, whose header has a table of
/// the forms. The operations are named "target from source". Texts are trimmed of white space first. A text that does
/// not match its pattern as a whole gives none.
class MSPCDateTimeConverter {
 public:
  /// Determines the system time zone and logs it, once. Each operation calls this; so does the set-up of an export.
  static void initialize();

  // To instants. MSPDI texts are wall-clock times of the system zone.

  static std::optional<platform::Instant> mppFromMspdiDateOnly(std::string_view mspdi);
  static std::optional<platform::Instant> mppFromMspdiDateTime(std::string_view mspdi);
  static std::optional<platform::Instant> mppFromKvdxDateOnly(std::string_view kvdx);
  /// Offsets may be "Z", +02, +0200, +02:00 or +02:00:00. Ends the process when a text of several lines has several
  /// offsets.
  static std::optional<platform::Instant> mppFromKvdxDateTime(std::string_view kvdx);

  // To MSPDI.

  static std::string mspdiFromMppDateTime(platform::Instant mpp);
  static std::string mspdiFromMppDateOnly(platform::Instant mpp);
  static std::optional<std::string> mspdiFromKvdxDateTime(std::string_view kvdx);
  static std::optional<std::string> mspdiFromKvdxDateOnly(std::string_view kvdx);

  // To kvdx: with the system zone's offset in three fields (+02:00:00), or in UTC with "Z" when that is forced.

  static std::string kvdxFromMppDateTime(platform::Instant mpp, bool forceUTC = false);
  static std::string kvdxFromMppDateOnly(platform::Instant mpp, bool forceUTC = false);
  static std::optional<std::string> kvdxFromMspdiDateTime(std::string_view mspdi, bool forceUTC = false);
  static std::optional<std::string> kvdxFromMspdiDateOnly(std::string_view mspdi, bool forceUTC = false);

  /// Rewrites an offset of 4 to 6 digits at the end of the text in three fields, or as "Z" when UTC is forced; appends
  /// "Z" to a text without an offset, and midnight to one without a time:
  ///
  ///   "2026-05-06T08:00:00+0200"   "2026-05-06T08:00:00+02:00:00"
  ///   "2026-05-06T08:00:00"        "2026-05-06T08:00:00Z"
  /// @throws InvariantFailure for an empty text. Ends the process when there are several offsets at line ends.
  static std::string ensureISOTimeZoneFormat(std::string_view text, bool forceUTC);
};
