#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Conform/DayChanges.h"
#include "Conform/Hours.h"
#include "Platform/XML/XMLTree.h"

namespace conform {

/// The dates of schedules that are kept: the years 1 to 9999, which the format can write.
[[nodiscard]] std::int64_t firstKeptDay();
[[nodiscard]] std::int64_t lastKeptDay();

/// The contents of one resource's own `schedule`, without the groups above it. Uses the same elements as the exporter:
///
/// - the last `schedule`;
/// - for the week, `flattened-schedule-day` if there are any, otherwise `schedule-day`;
/// - for dated changes, the dated flattened days if there are any, otherwise the events of `calendar`.
///
/// If several elements are for one weekday or date, the last one counts.
class Schedule {
 public:
  /// @param resource the source `resource`; without a `schedule`, the result is empty.
  /// @param sources names of the sets of events that were read so far; those of this schedule are added. A nameless set
  /// is called "Overtime" or "Time Off", like the dated days.
  Schedule(xml::Node resource, std::vector<std::string>& sources);

  /// Hours of the weekday, 1 Sunday to 7 Saturday; none when the schedule does not name it.
  [[nodiscard]] const std::optional<Hours>& weekDay(int weekday) const {
    return week_[static_cast<std::size_t>(weekday)];
  }
  /// The changes of hours on dates that the schedule names.
  [[nodiscard]] const DayChanges& changes() const { return changes_; }
  /// How many working times are empty, reversed or partly outside their day. Their part within the day was kept.
  [[nodiscard]] std::size_t unsaid() const { return unsaid_; }
  /// Whether events before the year 1 or after 9999 were left out.
  [[nodiscard]] bool isCutOff() const { return isCutOff_; }

 private:
  void readWeek(xml::Node schedule, bool isFlattened);
  void readDatedDays(const std::vector<xml::Node>& days, std::vector<std::string>& sources);
  void readCalendars(xml::Node schedule, std::vector<std::string>& sources);
  [[nodiscard]] Hours hoursOf(const std::vector<xml::Node>& timeSpans);
  [[nodiscard]] bool keepDays(std::int64_t& first, std::int64_t& last);

  std::array<std::optional<Hours>, 8> week_;  ///< by weekday; the first place is no day
  DayChanges changes_;
  std::size_t unsaid_ = 0;
  bool isCutOff_ = false;
};

}  // namespace conform
