#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"

namespace platform {

/// A time zone with its history of offsets: the bridge between instants and wall clocks.
class TimeZone {
 public:
  /// The machine's zone, TZ respected, captured at the first call. A TZ that names no known zone gives one
  /// warning line in the log and UTC.
  [[nodiscard]] static const TimeZone& system();

  /// Forgets the captured zone, so that the next call of system() looks at the environment again. For tests.
  static void resetSystemForTesting();

  /// @throws Exception never; an unknown name gives a zone for which isKnown() is false and which is UTC.
  explicit TimeZone(const std::string& name);
  ~TimeZone();
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

  [[nodiscard]] bool isKnown() const;
  /// The zone's identifier, for example "Europe/Berlin".
  [[nodiscard]] const std::string& name() const { return name_; }

  /// Whole seconds east of UTC at the instant, daylight-saving time included.
  [[nodiscard]] std::int64_t secondsFromGMT(Instant instant) const;
  /// The share of daylight-saving time in secondsFromGMT at the instant, in seconds; 0 outside of it.
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
    std::int64_t from;
    std::int64_t to;
    std::int64_t offset;
    std::int64_t daylight;
  };
  struct Rules;

  [[nodiscard]] const Span& spanAt(std::int64_t utcSeconds) const;
  [[nodiscard]] std::int64_t utcFromCivilSeconds(std::int64_t civilSeconds) const;

  std::string name_;
  std::unique_ptr<Rules> rules_;
  /// The spans asked for so far, in order of time: the library's look-ups are dear, and a plan's dates lie
  /// in a few of them.
  mutable std::vector<Span> spans_;
  /// Where the last two answers lay: the next one mostly lies there too (dates of a summer are labelled by what the
  /// zone has now, in winter).
  mutable std::array<std::size_t, 2> lastSpans_{};
};

}  // namespace platform
