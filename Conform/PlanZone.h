#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Time/TimeZone.h"
#include "Platform/XML/XMLTree.h"

namespace conform {

/// Finds the zone in which a plan's dates were written. Korvella writes each date with the offset that the author's
/// zone had at that date. So the offsets of a plan leave only one zone, or a few that show the same times for these
/// dates.
///
///   <start-date>2026-02-06T08:30:00-05:00</start-date> and <end-date>2026-10-08T17:30:00-04:00</end-date>
///   fit America/New_York, and not America/Bogota, which has -05:00 all year.
class PlanZone {
 public:
  /// Gathers the dates of a plan that have a time and an offset or "Z": texts of elements, and attributes. Dates that
  /// no calendar has, such as 30 February, are ignored.
  explicit PlanZone(xml::Node scenario);

  /// Takes dates with "Z" as instants of any zone, not as those of one whose offset was 0 then. For plans that no zone
  /// fits otherwise: London's clocks give "Z" in winter, but some dates are written with it everywhere.
  /// @return whether that changes anything: there are dates with "Z", and others.
  bool leaveOutUTC();

  /// The number of dates gathered.
  [[nodiscard]] std::size_t count() const { return count_; }
  /// How many of them have another offset than the zone at that instant.
  [[nodiscard]] std::size_t countOfOthers(const platform::TimeZone& zone) const;
  /// The first zone that fits all dates: UTC, then those in which most people live, then every other one of the
  /// system's zone data in alphabetical order. Empty when none fits, as when several authors worked in several zones.
  [[nodiscard]] std::string firstFitting();
  /// A zone that firstFitting() could not try, because its data cannot be read; empty when there was none.
  [[nodiscard]] const std::string& unreadableZone() const { return unreadable_; }

 private:
  /// Dates of one instant and offset. A plan has the same few times of day over and over.
  struct Date {
    std::int64_t utcSeconds;
    std::int64_t offset;
    bool isUTC;  ///< written with "Z"
    std::size_t count;
  };

  void gather(std::string_view text);
  void sortDates();
  [[nodiscard]] bool fits(const platform::TimeZone& zone) const;

  std::vector<Date> dates_;
  std::size_t count_ = 0;
  std::string unreadable_;
};

}  // namespace conform
