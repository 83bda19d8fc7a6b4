#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Platform/Time/DateComponents.h"
#include "Platform/Time/Instant.h"

/// Which components of a date and time a text carried, or are to be printed: a sum of the bits below.
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

/// The parts of a date and time together with the offset from UTC of the clock that shows them. A fresh record says
/// UTC until a parser or a conversion says otherwise.
class MSPCDateComponents : public platform::DateComponents {
 public:
  MSPCDateComponents() = default;
  /// Takes over the twelve components; UTC, offset 0:0.
  static MSPCDateComponents initWithNSDateComponents(const platform::DateComponents& components);

  [[nodiscard]] bool isUTC() const { return isUTC_; }
  void setIsUTC(bool isUTC) { isUTC_ = isUTC; }
  /// Hours of the offset from UTC; carries the offset's sign.
  [[nodiscard]] std::int64_t timeZoneHour() const { return timeZoneHour_; }
  void setTimeZoneHour(std::int64_t hours) { timeZoneHour_ = hours; }
  /// Minutes of the offset from UTC; not negative when read from a text, unless offsets are taken as meant.
  [[nodiscard]] std::int64_t timeZoneMinute() const { return timeZoneMinute_; }
  void setTimeZoneMinute(std::int64_t minutes) { timeZoneMinute_ = minutes; }

  /// From now on, offsets are what people mean by them. The exact file differs from that in two ways: of "-03:30" only
  /// the hours are negative, so that it reads as two hours and a half, and daylight-saving time is labelled with
  /// today's offset and its share, also for dates at which the zone had another offset.
  static void takeOffsetsAsMeant();
  [[nodiscard]] static bool takesOffsetsAsMeant();

  /// Minutes of an offset that a text gives with the sign in front of the hours.
  [[nodiscard]] static std::int64_t offsetMinutes(bool isNegative, std::int64_t minutes);

  /// The offset in seconds: 0 in UTC, else hours and minutes added as they stand.
  [[nodiscard]] std::int64_t secondsFromGMT() const;

  /// UTC exactly when the offset is 0:0.
  void fixUTC();
  /// What the designator "Z" says: UTC, offset 0:0.
  void setUTC();

  /// Hours, minutes and seconds, as far as the flags name them, in seconds.
  [[nodiscard]] std::int64_t secondsOfTime(MSPCUnitFlags unitFlags) const;

  /// The system zone's offset at the instant, as it labels clock fields: in seconds.
  [[nodiscard]] static std::int64_t systemOffset(platform::Instant when);

  /// Labels the clock fields, which stay as they are, with the system time zone's offset.
  /// @param date the instant whose offset counts; by default the one the clock fields name in the system zone.
  /// @return all units.
  MSPCUnitFlags forceSystemTimezoneforDate(std::optional<platform::Instant> date);

  /// Re-express the clock fields in another zone. @return all units.
  MSPCUnitFlags convertToUTC();
  /// The offset taken is the system zone's at the instant that the clock fields name there; the record's own offset
  /// plays no part in that look-up.
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
