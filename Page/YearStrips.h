#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/FileCalendars.h"

namespace page {

/// The days of a calendar as a strip for each year, coloured by kind: working days, weekly days off, other days off,
/// days with other hours. A calendar may reuse another one's strips and draw only the days that differ, so that the
/// page's size stays proportional to the file's.
class YearStrips {
 public:
  /// @param firstDay the first of the days that the calendars were asked for.
  YearStrips(const conform::FileCalendars& calendars, std::int64_t firstDay)
      : calendars_(calendars), firstDay_(firstDay) {}

  /// Appends the strips of the calendar with the index.
  /// @param pattern a calendar whose strips are reused; none to draw every day.
  void add(std::string& to, std::size_t index, std::optional<std::size_t> pattern, std::string_view name) const;

 private:
  enum class Kind { kUsual, kOffByWeek, kOff, kChanged };
  /// The part of a year to draw, as indices of days, and the place in the year's strip where it begins.
  struct Year {
    std::int64_t number;
    std::size_t first;
    std::size_t end;
    int left;
  };

  [[nodiscard]] static Kind kindOf(const conform::FileCalendars::Day& day);
  [[nodiscard]] std::vector<Kind> kindsOf(std::size_t index) const;
  [[nodiscard]] Year yearOf(std::int64_t number, std::size_t numberOfDays) const;
  static void addKind(std::string& to, std::string_view style, const std::vector<bool>& isDrawn, const Year& year);
  static void addYear(std::string& to, const std::vector<Kind>& kinds, const std::vector<Kind>& patternKinds,
                      const Year& year);

  const conform::FileCalendars& calendars_;
  std::int64_t firstDay_;
};

}  // namespace page
