#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Conform/PlanFile.h"

namespace conform {

/// The hours that a reader of a file finds in its calendars on the days of a stretch of time. For a date these are the
/// hours of: an exception of the calendar; else one of its base; else its own work week or week; else its base's. Where
/// two exceptions of one calendar hold, the first counts. A day of which nothing is said is off.
class FileCalendars {
 public:
  /// @param calendars must outlive this. @param firstDay counted from 1970-01-01.
  FileCalendars(const std::vector<FileCalendar>& calendars, std::int64_t firstDay, std::size_t numberOfDays);

  /// What a calendar has on a day.
  struct Day {
    const WorkingHours* hours = nullptr;  ///< those that hold; belong to the calendars
    const WorkingHours* usual = nullptr;  ///< those that the week alone has
  };
  /// One for each day. @param index into the calendars.
  [[nodiscard]] std::vector<Day> days(std::size_t index) const;
  /// The hours of the week, Sunday to Saturday.
  [[nodiscard]] std::vector<const WorkingHours*> week(std::size_t index) const;
  /// Where the calendar with the UID stands; none when there is none.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view uid) const;

 private:
  /// What is known of each day so far; null for nothing.
  using Layer = std::vector<const WorkingHours*>;

  [[nodiscard]] std::vector<std::size_t> chainOf(std::size_t index) const;
  /// What a calendar says itself, without its base.
  struct Layers {
    Layer exceptions;
    Layer weeks;  ///< work weeks, and the week where there are none
  };
  [[nodiscard]] const Layers& layersOf(std::size_t index) const;
  [[nodiscard]] Layer exceptionsOf(const FileCalendar& calendar) const;
  [[nodiscard]] Layer weeksOf(const FileCalendar& calendar) const;
  /// Where the days' part begins and ends, as indices; the end is excluded.
  struct Part {
    std::size_t begin;
    std::size_t end;
  };
  [[nodiscard]] Part partOf(std::int64_t firstDay, std::int64_t lastDay) const;
  [[nodiscard]] std::size_t weekdayAt(std::size_t day) const;

  const std::vector<FileCalendar>& calendars_;
  std::int64_t firstDay_;
  std::size_t numberOfDays_;
  std::unordered_map<std::string_view, std::size_t> indices_;
  /// Of some calendars: many have the same base.
  mutable std::unordered_map<std::size_t, Layers> layers_;
};

}  // namespace conform
