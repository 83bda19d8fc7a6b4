#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Time/Instant.h"

namespace conform {

/// A stretch of a day in seconds from midnight; the end is excluded.
struct Span {
  std::int64_t from = 0;
  std::int64_t to = 0;
  friend bool operator==(const Span&, const Span&) = default;
};

/// The working hours of one day: spans in order, between 0 and 86400, not empty, with a gap between any two. On a day
/// without spans nobody works.
class Hours {
 public:
  Hours() = default;
  /// One span, or none when it is empty. It must lie within the day.
  Hours(std::int64_t from, std::int64_t to);
  /// The spans together. They may overlap, but must lie within the day.
  explicit Hours(std::vector<Span> spans);
  /// From midnight to midnight.
  static Hours wholeDay() { return {0, platform::kSecondsPerDay}; }

  [[nodiscard]] const std::vector<Span>& spans() const { return spans_; }
  [[nodiscard]] bool empty() const { return spans_.empty(); }
  /// How long they are together.
  [[nodiscard]] std::int64_t seconds() const;

  /// Adds the part of the span that is within the day.
  /// @return false unless the whole span is within the day, and it is not empty.
  bool add(std::int64_t from, std::int64_t to);
  void add(const Hours& other);
  void remove(const Hours& other);
  /// The part of the hours between these two seconds of the day.
  [[nodiscard]] Hours within(std::int64_t from, std::int64_t to) const;
  /// The hours in at most this many spans: the shortest gaps become working time; of equal gaps, the earlier first.
  /// 8-9, 10-11, 11:30-12 in two spans: 8-9, 10-12.
  [[nodiscard]] Hours inAtMost(std::size_t count) const;

  friend bool operator==(const Hours&, const Hours&) = default;

 private:
  std::vector<Span> spans_;
};

/// A time of day as in the format: 30600 gives "08:30:00". The midnight at the end of a day, 86400, also gives
/// "00:00:00".
[[nodiscard]] std::string timeOfDayText(std::int64_t second);

}  // namespace conform
