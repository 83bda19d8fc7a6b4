#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Conform/PlanFile.h"
#include "Platform/Base/IdHash.h"

namespace conform {

/// The hours that a reader finds in a file's calendars, for each day of a stretch of time. They come from the first of
/// these that exists: an exception of the calendar, one of its base, the calendar's own work week or week, that of its
/// base. When two exceptions of a calendar hold on one day, the first counts. A day without any of these is off.
class FileCalendars {
 public:
  /// @param calendars must outlive this. @param firstDay counted from 1970-01-01.
  FileCalendars(const std::vector<FileCalendar>& calendars, std::int64_t firstDay, std::size_t numberOfDays);

  /// A calendar's hours on a day.
  struct Day {
    const WorkingHours* hours = nullptr;  ///< the hours of this day; owned by the calendars
    const WorkingHours* usual = nullptr;  ///< the hours by the week alone
  };
  /// One for each day. @param index into the calendars.
  [[nodiscard]] std::vector<Day> days(std::size_t index) const;
  /// The hours of the week, Sunday to Saturday.
  [[nodiscard]] std::vector<const WorkingHours*> week(std::size_t index) const;
  /// The index of the calendar with the UID; none when there is none.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view uid) const;

 private:
  /// The hours found for each day so far; null for none.
  using Layer = std::vector<const WorkingHours*>;

  [[nodiscard]] std::vector<std::size_t> chainOf(std::size_t index) const;
  /// A calendar's own contents, without its base.
  struct Layers {
    Layer exceptions;
    Layer weeks;  ///< work weeks, and the week where there are none
  };
  [[nodiscard]] const Layers& layersOf(std::size_t index) const;
  [[nodiscard]] Layer exceptionsOf(const FileCalendar& calendar) const;
  [[nodiscard]] Layer weeksOf(const FileCalendar& calendar) const;
  /// A part of the days, as indices; the end is excluded.
  struct Part {
    std::size_t begin;
    std::size_t end;
  };
  [[nodiscard]] Part partOf(std::int64_t firstDay, std::int64_t lastDay) const;
  [[nodiscard]] std::size_t weekdayAt(std::size_t day) const;

  const std::vector<FileCalendar>& calendars_;
  std::int64_t firstDay_;
  std::size_t numberOfDays_;
  std::unordered_map<std::string_view, std::size_t, platform::IdHash> indices_;
  /// Kept for some calendars, since many have the same base.
  mutable std::unordered_map<std::size_t, Layers> layers_;
};

}  // namespace conform
