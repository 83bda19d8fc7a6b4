#include "Page/RowChart.h"

#include <fmt/format.h>

#include <algorithm>

#include "Conform/Hours.h"
#include "Page/Display.h"
#include "Page/Html.h"
#include "Page/RowShape.h"
#include "Platform/Time/GregorianCalendar.h"

namespace page {
namespace {

using platform::kSecondsPerDay;

constexpr double kThinnest = 2;  ///< of a bar, so that it is seen
constexpr double kUnitsPerTextSize = 16;
constexpr int kHeadHeight = 44;
constexpr int kHeadMiddle = 22;

/// How wide the chart is shown: its units scale with the reader's size of texts.
std::string widthText(const Timeline& timeline) { return number(timeline.width() / kUnitsPerTextSize) + "rem"; }

void addPath(std::string& to, std::string_view kind, std::string_view data) {
  if (!data.empty()) add(to, R"(<path class="{}" d="{}"/>)", kind, data);
}

std::string box(double from, double to, int top, int bottom) {
  return fmt::format("M{} {}H{}v{}H{}z", number(from), top, number(std::max(to, from + kThinnest)), bottom - top,
                     number(from));
}

/// A thin bar with a tip at each end.
std::string summaryBar(const Row& row) {
  const std::string from = number(row.from);
  return fmt::format("M{} 8H{}v10l-4 -5H{}zM{} 13v5l4 -5z", from, number(std::max(row.to, row.from + kThinnest)), from,
                     from);
}

void addTitle(std::string& to, const Row& row) {
  const conform::FileTask& task = *row.task;
  add(to, "<title>{}", escaped(task.name));
  if (row.hasBar) add(to, ": {}", dateTimeText(task.start ? task.start : task.finish));
  if (!task.isMilestone && task.start && task.finish) add(to, " - {}", dateTimeText(task.finish));
  if (task.percentComplete != 0) add(to, ", {} %", task.percentComplete);
  to += "</title>";
}

void addBaselines(std::string& to, const Row& row, const Timeline& timeline) {
  std::string data;
  for (const conform::FileBaseline& baseline : row.task->baselines) {
    if (!baseline.start) continue;
    const double from = timeline.xOf(*baseline.start);
    data += box(from, baseline.finish ? timeline.xOf(*baseline.finish) : from, 21, 25);
  }
  addPath(to, "l", data);
}

void addBar(std::string& to, const Row& row) {
  if (row.task->isMilestone) {
    addPath(to, "m", fmt::format("M{} 6l7 7l-7 7l-7 -7z", number(row.from)));
    return;
  }
  addPath(to, row.isGroup ? "s" : "b", row.isGroup ? summaryBar(row) : box(row.from, row.to, kBarTop, kBarBottom));
  const double done = static_cast<double>(std::clamp<std::int64_t>(row.task->percentComplete, 0, 100)) / 100;
  const double doneTo = row.from + (row.to - row.from) * done;
  if (done > 0) addPath(to, "p", row.isGroup ? box(row.from, doneTo, 9, 12) : box(row.from, doneTo, 10, 16));
}

/// Days without working time next to each other are one box.
std::string offDaysPath(const Timeline& timeline, const std::vector<bool>& offDays) {
  std::string data;
  for (std::size_t day = 0; day < offDays.size(); ++day) {
    if (!offDays[day]) continue;
    const std::size_t first = day;
    while (day < offDays.size() && offDays[day]) ++day;
    const auto x = [&](std::size_t at) { return number(static_cast<double>(at) * timeline.dayWidth()); };
    add(data, "M{} 0H{}v1H{}z", x(first), x(day), x(first));
  }
  return data;
}

double xOfTick(const Timeline& timeline, const Timeline::Tick& tick) { return timeline.xOf(tick.day * kSecondsPerDay); }

std::string upperLabel(const Timeline::Unit& unit, const Timeline::Tick& tick) {
  if (unit.name != "month") return tick.label;
  const auto civil = platform::GregorianCalendar::civilFromSeconds(tick.day * kSecondsPerDay);
  return fmt::format("{} {}", tick.label, civil.year);
}

/// Whether the first unit is cut off by so much that its label would hang over the next one, however far the reader
/// zooms out.
/// @param leastDay the width of a day at which the labels are still shown.
bool isTooNarrow(const Timeline& timeline, std::string_view label, std::int64_t end, double leastDay) {
  constexpr double kWidthOfLetter = 7;
  return static_cast<double>(end - timeline.firstDay()) * leastDay < kWidthOfLetter * static_cast<double>(label.size());
}

/// A row of labels, with a line in front of each.
void addTicks(std::string& to, const Timeline& timeline, const Timeline::Unit& unit, bool isUpper, double leastDay) {
  std::string lines;
  const std::vector<Timeline::Tick> ticks = timeline.ticks(unit);
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const std::string x = number(xOfTick(timeline, ticks[i]));
    add(lines, "M{} {}v{}", x, isUpper ? 0 : kHeadMiddle, kHeadMiddle);
    const std::string label = isUpper ? upperLabel(unit, ticks[i]) : ticks[i].label;
    if (i == 0 && ticks.size() > 1 && isTooNarrow(timeline, label, ticks[1].day, leastDay)) continue;
    add(to, R"(<text x="{}" y="{}" dx="3">{}</text>)", x, isUpper ? 15 : 37, label);
  }
  addPath(to, "t", lines);
}

/// The unit's row of labels and the one above it.
void addBothRows(std::string& to, const Timeline& timeline, const Timeline::Unit& lower) {
  const double leastDay = lower.smallestWidth / lower.days;
  for (const Timeline::Unit& unit : timeline.units()) {
    if (unit.name == lower.upper) addTicks(to, timeline, unit, true, leastDay);
  }
  addTicks(to, timeline, lower, false, leastDay);
}

}  // namespace

void drawRow(std::string& to, const Row& row, const LinkLines::Paths& links, const Timeline& timeline) {
  add(to, R"(<svg viewBox="0 0 {0} {1}" width="{2}" preserveAspectRatio="none" role="img">)", number(timeline.width()),
      kRowHeight, widthText(timeline));
  addTitle(to, row);
  addBaselines(to, row, timeline);
  addPath(to, "k v", links.passing);
  addPath(to, "k", links.lines);
  if (row.hasBar) addBar(to, row);
  addPath(to, "a", links.heads);
  to += "</svg>";
}

void drawBackground(std::string& to, const Timeline& timeline, const std::vector<bool>& offDays,
                    conform::CivilSeconds today) {
  add(to, R"(<svg class="back" viewBox="0 0 {0} 1" width="{1}" preserveAspectRatio="none" aria-hidden="true">)",
      number(timeline.width()), widthText(timeline));
  addPath(to, "w", offDaysPath(timeline, offDays));
  std::string lines;
  for (const Timeline::Tick& tick : timeline.ticks(timeline.bestUnit())) {
    add(lines, "M{} 0v1", number(xOfTick(timeline, tick)));
  }
  addPath(to, "g", lines);
  if (timeline.holds(today)) addPath(to, "n", fmt::format("M{} 0v1", number(timeline.xOf(today))));
  to += "</svg>";
}

void drawHead(std::string& to, const Timeline& timeline) {
  add(to,
      R"(<svg class="head" viewBox="0 0 {} {}" width="{}" preserveAspectRatio="none" role="img" )"
      R"(data-day="{:.6g}"><title>Timeline from {} to {}</title>)",
      number(timeline.width()), kHeadHeight, widthText(timeline), timeline.dayWidth(),
      dateText(timeline.firstDay() * kSecondsPerDay), dateText(timeline.lastDay() * kSecondsPerDay));
  const std::string_view best = timeline.bestUnit().name;
  for (const Timeline::Unit& unit : timeline.units()) {
    add(to, R"(<g data-unit="{}" data-days="{}" data-least="{}"{}>)", unit.name, unit.days, unit.smallestWidth,
        unit.name == best ? R"( class="on")" : "");
    addBothRows(to, timeline, unit);
    to += "</g>";
  }
  to += "</svg>";
}

}  // namespace page
