#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"

namespace platform {

/// A time zone with its history of offsets, as the C library reads it from the system's zone data. Converts between
/// instants and wall clocks. The C library knows one zone at a time, the one in TZ, so a zone other than the machine's
/// sets TZ for a moment when it is first asked about a date. Every question about a date throws platform::Exception
/// when the zone has a file that the C library cannot load.
///
///   const TimeZone zone("Europe/Berlin");
///   zone.civilFromInstant({1301187600})            // 2011-03-27T01:00:00Z: clocks show 03:00:00
///   zone.instantFromCivil({2011, 3, 27, 2, 30, 0})  // skipped: uses the offset before, 2011-03-27T01:30:00Z
///   zone.instantFromCivil({2011, 10, 30, 2, 0, 0})  // shown twice: the second time, 2011-10-30T01:00:00Z
class TimeZone {
 public:
  /// The machine's zone, determined at the first call. TZ is read as the C library does: the name of a zone file (also
  /// with a colon in front), its path, a POSIX rule ("EST5EDT,M3.2.0,M11.1.0"), or an empty text for UTC. Any other TZ
  /// gives UTC and one warning in the log. Leap seconds are not counted.
  [[nodiscard]] static const TimeZone& system();

  /// UTC, wherever the machine is.
  [[nodiscard]] static const TimeZone& utc();

  /// Makes this zone the machine's for the rest of the process, also for its log. Must be called before the first date
  /// is converted, since conversions are cached.
  static void setSystem(const std::string& name);
  /// The names of all zones in the system's zone table, in alphabetical order; empty when there is no table.
  [[nodiscard]] static std::vector<std::string> names();

  /// Makes the next call of system() read the environment again. For tests.
  static void resetSystemForTesting();

  /// @param name as in TZ. For an unknown one, isKnown() is false and the zone is UTC.
  explicit TimeZone(const std::string& name);
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

  [[nodiscard]] bool isKnown() const { return isKnown_; }
  /// False for an unknown zone, and for the machine's when TZ is not set and the file /etc/localtime is missing or
  /// cannot be read: then the zone is UTC by convention.
  [[nodiscard]] bool isFound() const { return isFound_; }
  /// The zone's name: "Europe/Berlin", also when it was given by a path; a POSIX rule unchanged; "UTC".
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Whole seconds east of UTC at the instant, daylight-saving time included.
  [[nodiscard]] std::int64_t secondsFromGMT(Instant instant) const;
  /// The same, without preparing the surrounding 64 days for further calls, which takes sixty times as long. For a zone
  /// that is asked only once or twice.
  [[nodiscard]] std::int64_t secondsFromGMTOnce(Instant instant) const;
  /// Whether the zone data calls it daylight-saving time. In Europe/Dublin that is the winter.
  [[nodiscard]] bool isDaylightSavingTime(Instant instant) const;
  /// How many of the seconds of secondsFromGMT() are due to daylight-saving time; 0 outside of it. The difference from
  /// the standard time before or after, whichever is smaller: 3600 in Berlin's summer, -3600 in Dublin's winter.
  [[nodiscard]] std::int64_t daylightSavingOffset(Instant instant) const;

  /// The instant at which the zone's clocks show the civil time. Of a time shown twice, the later instant; for a time
  /// that is skipped, the offset before the change is used.
  [[nodiscard]] Instant instantFromCivil(const CivilTime& civil) const;
  /// The same for seconds from 1970-01-01T00:00:00 on the zone's clocks.
  [[nodiscard]] Instant instantFromCivilSeconds(std::int64_t civilSeconds) const;
  /// What the zone's clocks show at the instant; fractions of a second are cut off.
  [[nodiscard]] CivilTime civilFromInstant(Instant instant) const;
  /// The same as seconds from 1970-01-01T00:00:00 on the zone's clocks.
  [[nodiscard]] std::int64_t civilSecondsFromInstant(Instant instant) const;

  /// The wall-clock 00:00:00 of the instant's day.
  [[nodiscard]] Instant startOfDay(Instant instant) const;
  /// The day's wall-clock 23:59:59.
  [[nodiscard]] Instant endOfDay(Instant instant) const;
  /// Weekday on the zone's calendar: 1 Sunday to 7 Saturday.
  [[nodiscard]] int weekday(Instant instant) const;

 private:
  /// A stretch of time with one offset, from `from` until before `to`, in seconds since 1970.
  struct Span {
    std::int64_t from = 0;
    std::int64_t to = 0;
    std::int64_t offset = 0;
    bool isDaylightSaving = false;
  };

  [[nodiscard]] Span spanAt(std::int64_t utcSeconds) const;
  /// Checks that the C library uses the zone's file. Must be called while TZ is set to the zone.
  /// @throws platform::Exception when it could not read the file.
  void requireFile() const;
  [[nodiscard]] static Span readingAt(std::int64_t utcSeconds);
  [[nodiscard]] std::vector<Span> spansFrom(std::int64_t blockStart) const;
  /// The offset of the nearest standard time before or after the span; none when there is none.
  [[nodiscard]] std::optional<std::int64_t> standardOffset(Span span, bool isForward) const;
  [[nodiscard]] std::int64_t utcFromCivilSeconds(std::int64_t civilSeconds) const;

  std::string tz_;    ///< the value of TZ that selects this zone
  std::string file_;  ///< the bytes of its file; empty for a POSIX rule
  std::string name_;
  bool isKnown_ = true;
  bool isFound_ = true;
  mutable bool isCompared_ = false;  ///< see requireFile()
  /// The spans of each block of 64 days that was needed so far. Asking the C library takes a hundred times as long.
  mutable std::unordered_map<std::size_t, std::vector<Span>> blocks_;
  /// The last two answers, since the next is mostly one of them. Two, because a date in summer also asks for the offset
  /// of now, which may be in winter.
  mutable std::array<Span, 2> lastSpans_{};
};

}  // namespace platform
