#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Time/DateComponents.h"
#include "Platform/Time/Instant.h"

/// The components of a date and time that a text had, or that are to be printed: a sum of the bits below.
using MSPCUnitFlags = std::uint64_t;

inline constexpr MSPCUnitFlags kMSPCYear = 0x4;
inline constexpr MSPCUnitFlags kMSPCMonth = 0x8;
inline constexpr MSPCUnitFlags kMSPCDay = 0x10;
inline constexpr MSPCUnitFlags kMSPCHour = 0x20;
inline constexpr MSPCUnitFlags kMSPCMinute = 0x40;
inline constexpr MSPCUnitFlags kMSPCSecond = 0x80;
inline constexpr MSPCUnitFlags kMSPCTimeZoneHour = 0x200000;    ///< a numeric offset's hours
inline constexpr MSPCUnitFlags kMSPCTimeZoneMinute = 0x400000;  ///< a numeric offset's minutes
inline constexpr MSPCUnitFlags kMSPCTimeZoneUTC = 0x800000;     ///< the designator "Z"

inline constexpr MSPCUnitFlags kMSPCDateUnits = 0x1C;
inline constexpr MSPCUnitFlags kMSPCTimeUnits = 0xE0;
inline constexpr MSPCUnitFlags kMSPCDateTimeUnits = 0xFC;
inline constexpr MSPCUnitFlags kMSPCTimeZoneUnits = 0xE00000;
inline constexpr MSPCUnitFlags kMSPCAllUnits = 0xE000FC;
/// The text could not be parsed, or the conversion failed.
inline constexpr MSPCUnitFlags kMSPCUnitsError = 0x7FFFFFFFFFFFFFFF;

/// The parts of a date and time, with the offset from UTC of the clock that shows them. A new record is UTC until a
/// parser or a conversion sets another offset.
class MSPCDateComponents : public platform::DateComponents {
 public:
  MSPCDateComponents() = default;
  /// A record with these twelve components, UTC, offset 0:0.
  static MSPCDateComponents initWithNSDateComponents(const platform::DateComponents& components);

  [[nodiscard]] bool isUTC() const { return isUTC_; }
  void setIsUTC(bool isUTC) { isUTC_ = isUTC; }
  /// Hours of the offset from UTC, with the offset's sign.
  [[nodiscard]] std::int64_t timeZoneHour() const { return timeZoneHour_; }
  void setTimeZoneHour(std::int64_t hours) { timeZoneHour_ = hours; }
  /// Minutes of the offset from UTC. Never negative when read from a text, unless offsets are taken as meant.
  [[nodiscard]] std::int64_t timeZoneMinute() const { return timeZoneMinute_; }
  void setTimeZoneMinute(std::int64_t minutes) { timeZoneMinute_ = minutes; }

  /// From now on, the process reads and writes offsets as people mean them. The exact file, which must not change,
  /// differs in four ways:
  ///
  ///   "-03:30"                   the hours are negative and the minutes are not: 2 hours 30 minutes west of UTC
  ///   daylight-saving time       labelled with today's standard offset plus its share, even if the zone's standard
  ///                              offset was different at that date
  ///   near a clock change        converted with the offset that the zone has when its clock shows the fields, although
  ///                              these are in another offset: hours before or after the change are an hour off
  ///   a midnight that the clocks skip   read as 01:00, so that an event from there to midnight ends the export
  static void takeOffsetsAsMeant();
  [[nodiscard]] static bool takesOffsetsAsMeant();

  /// The minutes of an offset in a text, with the sign that they get in the record.
  [[nodiscard]] static std::int64_t offsetMinutes(bool isNegative, std::int64_t minutes);

  /// The offset in seconds: 0 in UTC, otherwise hours plus minutes, each with its own sign. -3:30 with positive minutes
  /// gives -9000.
  [[nodiscard]] std::int64_t secondsFromGMT() const;

  /// The instant at which a clock with the offset shows the fields.
  [[nodiscard]] platform::Instant instant() const;

  /// Sets isUTC() to whether the offset is 0:0.
  void fixUTC();
  /// Sets the record to what the designator "Z" means: UTC, offset 0:0.
  void setUTC();

  /// Those of hours, minutes and seconds that the flags name, in seconds.
  [[nodiscard]] std::int64_t secondsOfTime(MSPCUnitFlags unitFlags) const;

  /// The offset, in seconds, with which the system zone's clock readings at the instant are labelled; see
  /// takeOffsetsAsMeant().
  [[nodiscard]] static std::int64_t systemOffset(platform::Instant when);

  /// Labels the clock fields with the system time zone's offset, without changing them.
  /// @param date the instant that determines the offset; by default, the one at which the system zone's clock shows
  /// these fields.
  /// @return all units.
  MSPCUnitFlags forceSystemTimezoneforDate(std::optional<platform::Instant> date);

  /// These three convert the clock fields to another zone.
  /// @return all units.
  MSPCUnitFlags convertToUTC();
  /// Uses the system zone's offset at the instant at which that zone's clock shows the fields. The record's own offset
  /// is ignored when determining that instant.
  MSPCUnitFlags convertToSystemTimezone();
  MSPCUnitFlags convertToTimeZoneForSecondsFromGMT(std::int64_t seconds);

  /// The components and the zone, one line each, for logs.
  [[nodiscard]] std::string componentsDescription() const;
  [[nodiscard]] std::string description() const;

 private:
  bool isUTC_ = true;
  std::int64_t timeZoneHour_ = 0;
  std::int64_t timeZoneMinute_ = 0;
};
