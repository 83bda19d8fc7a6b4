#include "Page/YearStrips.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "Conform/Hours.h"
#include "Conform/WallClock.h"
#include "Page/Display.h"
#include "Page/Html.h"
#include "Platform/Time/GregorianCalendar.h"

namespace page {
namespace {

using conform::firstDayOfYear;
using platform::GregorianCalendar;
using platform::kSecondsPerDay;

constexpr int kDayWidth = 4;
constexpr int kLabels = 12;  ///< height of the months' names
constexpr int kHeight = 28;

std::int64_t yearAt(std::int64_t day) { return GregorianCalendar::civilFromSeconds(day * kSecondsPerDay).year; }

/// The name of a month that lies between the two places, when there is room; the first has the year.
std::string monthLabel(std::int64_t month, std::int64_t year, int from, int to, bool isFirst, bool isLast) {
  constexpr int kWidthOfLetter = 7;
  const std::string label = isFirst ? fmt::format("{} {}", monthName(month), year) : std::string(monthName(month));
  const bool hasRoom = to - from >= kWidthOfLetter * static_cast<int>(label.size()) || (isFirst && isLast);
  return hasRoom ? fmt::format(R"(<text x="{}" y="9">{}</text>)", from + 3, label) : "";
}

/// Where a month begins in its year's strip.
int placeOf(std::int64_t year, std::int64_t month) {
  const std::int64_t day = conform::dayOf(GregorianCalendar::secondsFromCivil({year, month, 1}));
  return static_cast<int>(day - firstDayOfYear(year)) * kDayWidth;
}

void addMonths(std::string& to, std::int64_t year, int left, int right) {
  std::string lines;
  std::string labels;
  for (std::int64_t month = 1; month <= 12; ++month) {
    const int begin = placeOf(year, month);
    const int end = placeOf(year, month + 1);
    if (end <= left || begin >= right) continue;
    if (begin >= left) add(lines, "M{} 0v{}", begin, kHeight);
    labels += monthLabel(month, year, std::max(begin, left), std::min(end, right), labels.empty(), end >= right);
  }
  to += labels;
  if (!lines.empty()) add(to, R"(<path class="t" d="{}"/>)", lines);
}

}  // namespace

YearStrips::Kind YearStrips::kindOf(const conform::FileCalendars::Day& day) {
  if (day.hours->empty()) return day.usual->empty() ? Kind::kOffByWeek : Kind::kOff;
  return *day.hours == *day.usual ? Kind::kUsual : Kind::kChanged;
}

std::vector<YearStrips::Kind> YearStrips::kindsOf(std::size_t index) const {
  const auto days = calendars_.days(index);
  std::vector<Kind> kinds(days.size());
  std::transform(days.begin(), days.end(), kinds.begin(), kindOf);
  return kinds;
}

YearStrips::Year YearStrips::yearOf(std::int64_t number, std::size_t numberOfDays) const {
  const std::int64_t newYear = firstDayOfYear(number);
  const auto at = [&](std::int64_t day) {
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(day - firstDay_, 0, static_cast<std::int64_t>(numberOfDays)));
  };
  const std::size_t first = at(newYear);
  const auto left = static_cast<int>(firstDay_ + static_cast<std::int64_t>(first) - newYear) * kDayWidth;
  return {number, first, at(firstDayOfYear(number + 1)), left};
}

void YearStrips::add(std::string& to, std::size_t index, std::optional<std::size_t> pattern,
                     std::string_view name) const {
  const std::vector<Kind> kinds = kindsOf(index);
  if (kinds.empty()) return;
  const std::vector<Kind> patternKinds = pattern ? kindsOf(*pattern) : std::vector<Kind>();
  const std::int64_t last = yearAt(firstDay_ + static_cast<std::int64_t>(kinds.size()) - 1);
  for (std::int64_t number = yearAt(firstDay_); number <= last; ++number) {
    const Year year = yearOf(number, kinds.size());
    constexpr int kRoomForLabel = 60;
    const int width = std::max(static_cast<int>(year.end - year.first) * kDayWidth, kRoomForLabel);
    page::add(to, R"(<svg class="strip" viewBox="{0} 0 {1} {2}" width="{1}" role="img"><title>{3} in {4}</title>)",
              year.left, width, kHeight, escaped(name), number);
    page::add(to, R"(<g id="c{}-{}">)", index, number);
    if (pattern) page::add(to, R"(<use href="#c{}-{}"/>)", *pattern, number);
    addYear(to, kinds, patternKinds, year);
    to += "</g></svg>";
  }
}

void YearStrips::addYear(std::string& to, const std::vector<Kind>& kinds, const std::vector<Kind>& patternKinds,
                         const Year& year) {
  struct Style {
    Kind kind;
    std::string_view name;
  };
  constexpr std::array<Style, 4> kStyles = {
      {{Kind::kUsual, "y"}, {Kind::kOffByWeek, "e"}, {Kind::kOff, "o"}, {Kind::kChanged, "c"}}};
  for (const Style& style : kStyles) {
    std::vector<bool> isDrawn(kinds.size());
    for (std::size_t day = year.first; day < year.end; ++day) {
      isDrawn[day] = kinds[day] == style.kind && (patternKinds.empty() || patternKinds[day] != style.kind);
    }
    addKind(to, style.name, isDrawn, year);
  }
  const int right = year.left + static_cast<int>(year.end - year.first) * kDayWidth;
  if (patternKinds.empty()) addMonths(to, year.number, year.left, right);
}

/// Days next to each other are one box.
void YearStrips::addKind(std::string& to, std::string_view style, const std::vector<bool>& isDrawn, const Year& year) {
  std::string data;
  for (std::size_t day = year.first; day < year.end; ++day) {
    const std::size_t begin = day;
    while (day < year.end && isDrawn[day]) ++day;
    if (day == begin) continue;
    const int width = static_cast<int>(day - begin) * kDayWidth;
    page::add(data, "M{} {}h{}v{}h-{}z", static_cast<int>(begin - year.first) * kDayWidth + year.left, kLabels, width,
              kHeight - kLabels, width);
  }
  if (!data.empty()) page::add(to, R"(<path class="{}" d="{}"/>)", style, data);
}

}  // namespace page
