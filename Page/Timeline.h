#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/PlanFile.h"

namespace page {

/// The scale of the chart: the stretch of time that it shows, and how wide a day is. Dates before 1900 or after 2199
/// are drawn at the chart's edges when there are others, so that one wrong date does not squeeze all the rest together.
class Timeline {
 public:
  /// @param today used as the plan's date when the plan has none.
  Timeline(const conform::PlanFile& plan, conform::CivilSeconds today);

  /// Days from 1970-01-01, the last included.
  [[nodiscard]] std::int64_t firstDay() const { return firstDay_; }
  [[nodiscard]] std::int64_t lastDay() const { return lastDay_; }
  [[nodiscard]] std::int64_t numberOfDays() const { return lastDay_ - firstDay_ + 1; }
  [[nodiscard]] double dayWidth() const { return dayWidth_; }
  [[nodiscard]] double width() const { return static_cast<double>(numberOfDays()) * dayWidth_; }
  /// How many of the plan's dates are outside the chart.
  [[nodiscard]] std::size_t datesOutside() const { return datesOutside_; }

  /// The place of a moment in the chart's units; the nearest edge when it is outside.
  [[nodiscard]] double xOf(conform::CivilSeconds moment) const;
  [[nodiscard]] bool holds(conform::CivilSeconds moment) const;

  /// A unit of the chart's head: days, weeks, months, quarters, years, or many years.
  struct Unit {
    std::string_view name;
    double days;             ///< about how many days it has
    double smallestWidth;    ///< smallest width at which its labels do not overlap
    std::string_view upper;  ///< the unit of the row above it; empty for none
  };
  struct Tick {
    std::int64_t day;  ///< where the unit begins
    std::string label;
  };
  /// The units that are not too fine for this plan, the finest first.
  [[nodiscard]] std::vector<Unit> units() const;
  /// The finest unit whose labels do not overlap.
  [[nodiscard]] Unit bestUnit() const;
  /// The start of each unit within the chart, including the unit that contains the chart's first day.
  [[nodiscard]] std::vector<Tick> ticks(const Unit& unit) const;

 private:
  /// Extends the chart to today when that is not far outside.
  void showIfNear(std::int64_t today);
  void takeRange(const std::vector<conform::CivilSeconds>& dates, conform::CivilSeconds today);

  int weekStartDay_;
  std::int64_t firstDay_ = 0;
  std::int64_t lastDay_ = 0;
  double dayWidth_ = 1;
  std::size_t datesOutside_ = 0;
};

}  // namespace page
