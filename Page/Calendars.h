#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/FileCalendars.h"
#include "Conform/PlanFile.h"
#include "Page/YearStrips.h"

namespace page {

/// The page's section about calendars: the week and the exceptions of each in words, and its days as strips. For a
/// calendar without days of its own, it only says whose hours it has.
class Calendars {
 public:
  /// @param firstDay the first of the days that the calendars were asked for.
  Calendars(const conform::PlanFile& plan, const conform::FileCalendars& calendars, std::int64_t firstDay)
      : plan_(plan), calendars_(calendars), strips_(calendars, firstDay), depths_(plan.calendars.size()) {}

  void write(const std::function<void(std::string_view)>& sink);

 private:
  void addCalendar(std::string& to, std::size_t index);
  void addWeek(std::string& to, std::size_t index) const;
  void addStrips(std::string& to, std::size_t index);
  /// The calendar whose strips this one reuses, since the two differ on few days: the base, otherwise the project's
  /// calendar. It must be drawn already, and not itself reuse others too deeply for browsers.
  [[nodiscard]] std::optional<std::size_t> patternOf(std::size_t index) const;

  const conform::PlanFile& plan_;
  const conform::FileCalendars& calendars_;
  YearStrips strips_;
  /// How deeply the strips of each calendar reuse others; none for one that was not drawn.
  std::vector<std::optional<std::size_t>> depths_;
};

}  // namespace page
