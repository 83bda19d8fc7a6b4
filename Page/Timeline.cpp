#include "Page/Timeline.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "Conform/Hours.h"
#include "Conform/WallClock.h"
#include "Page/Display.h"
#include "Platform/Time/GregorianCalendar.h"

namespace page {
namespace {

using conform::CivilSeconds;
using conform::dayOf;
using platform::GregorianCalendar;
using platform::kSecondsPerDay;

constexpr double kWidest = 1500;  ///< of a chart, in the chart's units
constexpr double kWidestDay = 36;
constexpr double kMostTicks = 400;  ///< of one unit; a finer one would be no help

constexpr std::array<Timeline::Unit, 12> kUnits = {{{"day", 1, 17, "month"},
                                                    {"week", 7, 21, "month"},
                                                    {"month", 30, 30, "year"},
                                                    {"quarter", 91, 26, "year"},
                                                    {"year", 365.2425, 38, ""},
                                                    {"10", 3652.425, 38, ""},
                                                    {"100", 36524.25, 38, ""},
                                                    {"1000", 365242.5, 46, ""},
                                                    {"10000", 3652425, 52, ""},
                                                    {"1000000", 365242500, 70, ""},
                                                    {"100000000", 36524250000, 90, ""},
                                                    {"1000000000", 365242500000, 1, ""}}};

std::int64_t floorDivide(std::int64_t number, std::int64_t by) { return number / by - (number % by < 0 ? 1 : 0); }
std::int64_t dayOfDate(std::int64_t year, std::int64_t month, std::int64_t day) {
  return dayOf(GregorianCalendar::secondsFromCivil({year, month, day}));
}

void gather(std::vector<CivilSeconds>& dates, std::optional<CivilSeconds> start, std::optional<CivilSeconds> finish) {
  if (start) dates.push_back(*start);
  if (finish) dates.push_back(*finish);
}

std::vector<CivilSeconds> datesOf(const conform::PlanFile& plan) {
  std::vector<CivilSeconds> dates;
  for (const conform::FileTask& task : plan.tasks) {
    gather(dates, task.start, task.finish);
    for (const conform::FileBaseline& baseline : task.baselines) gather(dates, baseline.start, baseline.finish);
  }
  return dates;
}

bool isUsual(CivilSeconds date) {
  static const CivilSeconds kFirst = GregorianCalendar::secondsFromCivil({1900, 1, 1});
  static const CivilSeconds kEnd = GregorianCalendar::secondsFromCivil({2200, 1, 1});
  return date >= kFirst && date < kEnd;
}

/// Years of a unit; 0 for units that are shorter.
std::int64_t yearsOf(const Timeline::Unit& unit) {
  return unit.days < 365 ? 0 : static_cast<std::int64_t>(std::round(unit.days / 365.2425));
}

/// The beginning of the unit that holds the day.
std::int64_t beginningOf(const Timeline::Unit& unit, std::int64_t day, int weekStartDay) {
  if (unit.name == "day") return day;
  if (unit.name == "week") {
    const int weekday = conform::weekdayOf(day) - 1;
    return day - (weekday - weekStartDay + 7) % 7;
  }
  const auto civil = GregorianCalendar::civilFromSeconds(day * kSecondsPerDay);
  if (unit.name == "month") return dayOfDate(civil.year, civil.month, 1);
  if (unit.name == "quarter") return dayOfDate(civil.year, (civil.month - 1) / 3 * 3 + 1, 1);
  const std::int64_t years = yearsOf(unit);
  return dayOfDate(floorDivide(civil.year, years) * years, 1, 1);
}

std::int64_t nextOf(const Timeline::Unit& unit, std::int64_t beginning) {
  if (unit.name == "day") return beginning + 1;
  if (unit.name == "week") return beginning + 7;
  const auto civil = GregorianCalendar::civilFromSeconds(beginning * kSecondsPerDay);
  if (unit.name == "month") return dayOfDate(civil.year, civil.month + 1, 1);
  if (unit.name == "quarter") return dayOfDate(civil.year, civil.month + 3, 1);
  return dayOfDate(civil.year + yearsOf(unit), 1, 1);
}

std::string labelOf(const Timeline::Unit& unit, std::int64_t day) {
  const auto civil = GregorianCalendar::civilFromSeconds(day * kSecondsPerDay);
  if (unit.name == "day" || unit.name == "week") return fmt::format("{}", civil.day);
  if (unit.name == "month") return std::string(monthName(civil.month));
  if (unit.name == "quarter") return fmt::format("Q{}", (civil.month + 2) / 3);
  return fmt::format("{}", civil.year);
}

}  // namespace

Timeline::Timeline(const conform::PlanFile& plan, CivilSeconds today) : weekStartDay_(plan.weekStartDay) {
  const std::vector<CivilSeconds> all = datesOf(plan);
  std::vector<CivilSeconds> usual;
  std::copy_if(all.begin(), all.end(), std::back_inserter(usual), isUsual);
  datesOutside_ = usual.empty() ? 0 : all.size() - usual.size();
  takeRange(usual.empty() ? all : usual, today);
}

void Timeline::takeRange(const std::vector<CivilSeconds>& dates, CivilSeconds today) {
  const auto [first, last] = std::minmax_element(dates.begin(), dates.end());
  firstDay_ = dayOf(dates.empty() ? today : *first);
  lastDay_ = dayOf(dates.empty() ? today : *last);
  showIfNear(dayOf(today));
  // Some room at both sides, for arrows and for what is drawn around a date.
  const std::int64_t room = 2 + numberOfDays() / 40;
  firstDay_ -= room;
  lastDay_ += room;
  dayWidth_ = std::min(kWidestDay, kWidest / static_cast<double>(numberOfDays()));
}

void Timeline::showIfNear(std::int64_t today) {
  const std::int64_t near = numberOfDays() / 8;
  if (today < firstDay_ - near || today > lastDay_ + near) return;
  firstDay_ = std::min(firstDay_, today);
  lastDay_ = std::max(lastDay_, today);
}

double Timeline::xOf(CivilSeconds moment) const {
  const double days = static_cast<double>(moment - firstDay_ * kSecondsPerDay) / kSecondsPerDay;
  return std::clamp(days * dayWidth_, 0.0, width());
}

bool Timeline::holds(CivilSeconds moment) const { return dayOf(moment) >= firstDay_ && dayOf(moment) <= lastDay_; }

std::vector<Timeline::Unit> Timeline::units() const {
  std::vector<Unit> units;
  for (const Unit& unit : kUnits) {
    if (static_cast<double>(numberOfDays()) / unit.days <= kMostTicks) units.push_back(unit);
  }
  return units;
}

Timeline::Unit Timeline::bestUnit() const {
  const auto* found = std::find_if(kUnits.begin(), kUnits.end(),
                                   [this](const Unit& unit) { return unit.days * dayWidth_ >= unit.smallestWidth; });
  return found == kUnits.end() ? kUnits.back() : *found;
}

std::vector<Timeline::Tick> Timeline::ticks(const Unit& unit) const {
  std::vector<Tick> ticks;
  for (std::int64_t day = beginningOf(unit, firstDay_, weekStartDay_); day <= lastDay_; day = nextOf(unit, day)) {
    ticks.push_back({day, labelOf(unit, day)});
  }
  return ticks;
}

}  // namespace page
