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

/// A time zone with its history of offsets, as the C library reads it from the system's zone data: the bridge between
/// instants and wall clocks. The C library knows one zone at a time, the one in TZ: zones other than the machine's set
/// TZ for a moment when they are asked about dates for the first time.
///
///   const TimeZone zone("Europe/Berlin");
///   zone.civilFromInstant({1301187600})            // 2011-03-27T01:00:00Z: clocks show 03:00:00
///   zone.instantFromCivil({2011, 3, 27, 2, 30, 0})  // skipped: as if at the offset before, 2011-03-27T01:30:00Z
///   zone.instantFromCivil({2011, 10, 30, 2, 0, 0})  // shown twice: the second time, 2011-10-30T01:00:00Z
class TimeZone {
 public:
  /// The machine's zone, TZ respected, captured at the first call. TZ means what it means to the C library: the name of
  /// a zone file (also with a colon in front), its path, a POSIX rule ("EST5EDT,M3.2.0,M11.1.0"), an empty text for
  /// UTC. A TZ that is none of these gives one warning line in the log and UTC. Leap seconds are not counted.
  [[nodiscard]] static const TimeZone& system();

  /// UTC, wherever the machine is.
  [[nodiscard]] static const TimeZone& utc();

  /// Makes the zone that of the machine for the rest of the process, also for its log. Before the first date is
  /// converted: conversions are remembered.
  static void setSystem(const std::string& name);
  /// The names of all zones that the system's zone data distinguishes, in alphabetical order; none without that table.
  [[nodiscard]] static std::vector<std::string> names();

  /// Forgets the captured zone, so that the next call of system() looks at the environment again. For tests.
  static void resetSystemForTesting();

  /// @param name as in TZ. An unknown one gives a zone for which isKnown() is false and which is UTC.
  explicit TimeZone(const std::string& name);
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

  [[nodiscard]] bool isKnown() const { return isKnown_; }
  /// What to call the zone: "Europe/Berlin", also when it was given by a path; a POSIX rule as it stands; "UTC".
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Whole seconds east of UTC at the instant, daylight-saving time included.
  [[nodiscard]] std::int64_t secondsFromGMT(Instant instant) const;
  /// The same for a zone that is asked once or twice: it prepares no answers to further questions, which takes as long
  /// as sixty of these.
  [[nodiscard]] std::int64_t secondsFromGMTOnce(Instant instant) const;
  /// Whether the zone data calls the instant daylight-saving time. In some zones that is the winter (Europe/Dublin).
  [[nodiscard]] bool isDaylightSavingTime(Instant instant) const;
  /// The share of daylight-saving time in secondsFromGMT at the instant, in seconds; 0 outside of it. It is counted
  /// from the standard time before or after it, whichever is nearer in offset: -3600 in Dublin's winter.
  [[nodiscard]] std::int64_t daylightSavingOffset(Instant instant) const;

  /// The instant at which the zone's clocks show the civil time. A time that a clock change repeats is the
  /// later one; one that it skips is taken with the offset before the change.
  [[nodiscard]] Instant instantFromCivil(const CivilTime& civil) const;
  /// The same for seconds from 1970-01-01T00:00:00 on the zone's clocks.
  [[nodiscard]] Instant instantFromCivilSeconds(std::int64_t civilSeconds) const;
  /// What the zone's clocks show at the instant; fractions of a second are cut off.
  [[nodiscard]] CivilTime civilFromInstant(Instant instant) const;
  /// The same as seconds from 1970-01-01T00:00:00 on the zone's clocks.
  [[nodiscard]] std::int64_t civilSecondsFromInstant(Instant instant) const;

  /// The first instant of the day that holds the instant: its wall-clock 00:00:00.
  [[nodiscard]] Instant startOfDay(Instant instant) const;
  /// The day's wall-clock 23:59:59.
  [[nodiscard]] Instant endOfDay(Instant instant) const;
  /// Weekday on the zone's calendar: 1 Sunday to 7 Saturday.
  [[nodiscard]] int weekday(Instant instant) const;

 private:
  /// A stretch of time with one offset: [from, to) in seconds since 1970.
  struct Span {
    std::int64_t from = 0;
    std::int64_t to = 0;
    std::int64_t offset = 0;
    bool isDaylightSaving = false;
  };

  [[nodiscard]] Span spanAt(std::int64_t utcSeconds) const;
  [[nodiscard]] static Span readingAt(std::int64_t utcSeconds);
  [[nodiscard]] std::vector<Span> spansFrom(std::int64_t blockStart) const;
  /// The offset of the nearest standard time before or after the span; none when there is none.
  [[nodiscard]] std::optional<std::int64_t> standardOffset(Span span, bool isForward) const;
  [[nodiscard]] std::int64_t utcFromCivilSeconds(std::int64_t civilSeconds) const;

  std::string tz_;  ///< what TZ says to have this zone
  std::string name_;
  bool isKnown_ = true;
  /// The spans of the blocks of 64 days that were asked for so far: asking the C library takes a hundred times as long.
  mutable std::unordered_map<std::size_t, std::vector<Span>> blocks_;
  /// The last two answers: the next one is mostly one of them (dates of a summer are labelled by what the zone has now,
  /// in winter).
  mutable std::array<Span, 2> lastSpans_{};
};

}  // namespace platform
