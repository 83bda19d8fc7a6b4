#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Time/Instant.h"

namespace conform {

/// A stretch of a day in seconds from midnight, the end not included.
struct Span {
  std::int64_t from = 0;
  std::int64_t to = 0;
  friend bool operator==(const Span&, const Span&) = default;
};

/// The working hours of one day: spans within 0 to 86400 in order, none empty, none touching the next. A day without
/// any is one on which nobody works.
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

  /// Adds a span, of which only what lies within the day counts.
  /// @return false when that is not the whole span, or nothing at all.
  bool add(std::int64_t from, std::int64_t to);
  void add(const Hours& other);
  void remove(const Hours& other);
  /// The part of the hours from the one second to the other.
  [[nodiscard]] Hours within(std::int64_t from, std::int64_t to) const;
  /// The hours in at most so many spans: the smallest gaps become working time, of equal ones the earlier first.
  [[nodiscard]] Hours inAtMost(std::size_t count) const;

  friend bool operator==(const Hours&, const Hours&) = default;

 private:
  std::vector<Span> spans_;
};

/// A time of day as the format has it: "08:30:00" from 30600. The midnight that ends a day is "00:00:00" as well.
[[nodiscard]] std::string timeOfDayText(std::int64_t second);

}  // namespace conform
