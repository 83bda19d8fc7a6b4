#include "Page/LinkLines.h"

#include <fmt/format.h>

#include <algorithm>

#include "Page/Html.h"
#include "Page/RowShape.h"

namespace page {
namespace {

constexpr double kGap = 5;  ///< between a bar and a line that goes around it
/// The number of parts of lines that may be drawn, on average, for each row and link.
constexpr std::size_t kPartsEach = 6;

bool leavesAtFinish(int type) { return type == 0 || type == 1; }
bool arrivesAtStart(int type) { return type != 0 && type != 2; }
std::size_t spanOf(std::size_t from, std::size_t to) { return from < to ? to - from : from - to; }

}  // namespace

LinkLines::LinkLines(const Rows& rows) : rows_(rows), paths_(rows.list().size()) {
  gather();
  std::stable_sort(links_.begin(), links_.end(),
                   [](const Link& a, const Link& b) { return spanOf(a.from, a.to) < spanOf(b.from, b.to); });
  std::size_t left = kPartsEach * (paths_.size() + links_.size());
  for (const Link& link : links_) {
    const std::size_t span = spanOf(link.from, link.to);
    const bool isWhole = span <= left;
    if (isWhole) left -= span;
    draw(link, isWhole);
    if (!isWhole) ++cut_;
  }
  drawVerticals();
}

void LinkLines::gather() {
  const std::vector<Row>& rows = rows_.list();
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const conform::FileLink& link : rows[i].task->links) {
      const std::size_t from = rows_.indexOf(link.predecessorUid);
      if (from < rows.size() && from != i && rows[from].hasBar && rows[i].hasBar) {
        links_.push_back({from, i, link.type});
      }
    }
  }
}

void LinkLines::draw(const Link& link, bool isWhole) {
  const Row& from = rows_.list()[link.from];
  const bool atFinish = leavesAtFinish(link.type);
  const double left = atFinish ? from.to : from.from;
  std::string& lines = paths_[link.from].lines;
  const double x = drawEntry(link);
  if (!isWhole) {
    add(lines, "M{} {}h{}", number(left), kMiddle, atFinish ? kGap : -kGap);
    return;
  }
  const bool isDown = link.to > link.from;
  add(lines, "M{} {}H{}V{}", number(left), kMiddle, number(x), isDown ? kRowHeight : 0);
  verticals_.push_back({x, std::min(link.from, link.to) + 1, std::max(link.from, link.to)});
}

/// Draws the part of the line in the row where the link ends.
/// @return the place where the line enters from the rows between.
double LinkLines::drawEntry(const Link& link) {
  const Row& from = rows_.list()[link.from];
  const Row& to = rows_.list()[link.to];
  const double left = leavesAtFinish(link.type) ? from.to : from.from;
  const double arrival = arrivesAtStart(link.type) ? to.from : to.to;
  const bool isAhead = link.type == 2 ? arrival <= left : arrival >= left;
  const bool leavesAndArrivesAtOneSide = link.type == 0 || link.type == 3;
  if (isAhead && !leavesAndArrivesAtOneSide) return drawFromAbove(link, arrival);
  return drawFromSide(link, left, arrival);
}

/// Draws a straight line into the bar's top or bottom.
double LinkLines::drawFromAbove(const Link& link, double arrival) {
  const bool isDown = link.to > link.from;
  const int end = isDown ? kBarTop : kBarBottom;
  add(paths_[link.to].lines, "M{} {}V{}", number(arrival), isDown ? 0 : kRowHeight, end);
  add(paths_[link.to].heads, "M{} {}l-3 {}h6z", number(arrival), end, isDown ? -5 : 5);
  return arrival;
}

/// Draws a line around both bars into the side of the second.
double LinkLines::drawFromSide(const Link& link, double left, double arrival) {
  const bool isDown = link.to > link.from;
  const double outwards = arrivesAtStart(link.type) ? -kGap : kGap;
  Paths& paths = paths_[link.to];
  add(paths.heads, "M{} {}l{} -3v6z", number(arrival), kMiddle, outwards);
  if (link.type == 0 || link.type == 3) {
    const double x = (link.type == 0 ? std::max(left, arrival) : std::min(left, arrival)) + outwards;
    add(paths.lines, "M{} {}V{}H{}", number(x), isDown ? 0 : kRowHeight, kMiddle, number(arrival));
    return x;
  }
  const double x = left - outwards;
  add(paths.lines, "M{} {}V{}H{}V{}H{}", number(x), isDown ? 0 : kRowHeight, isDown ? 2 : kRowHeight - 2,
      number(arrival + outwards), kMiddle, number(arrival));
  return x;
}

void LinkLines::drawVerticals() {
  std::sort(verticals_.begin(), verticals_.end(),
            [](const Vertical& a, const Vertical& b) { return a.x != b.x ? a.x < b.x : a.firstRow < b.firstRow; });
  double x = 0;
  std::size_t drawnTo = 0;
  for (const Vertical& vertical : verticals_) {
    if (vertical.x != x) drawnTo = 0;
    x = vertical.x;
    for (std::size_t row = std::max(vertical.firstRow, drawnTo); row < vertical.endRow; ++row) {
      add(paths_[row].passing, "M{} 0v{}", number(x), kRowHeight);
    }
    drawnTo = std::max(drawnTo, vertical.endRow);
  }
}

}  // namespace page
