#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Page/Rows.h"

namespace page {

/// The arrows of links, divided into one part for each row, so that lines remain complete when rows are folded or the
/// page is printed on several sheets. Lines on top of each other are drawn once. When there would be far more parts
/// than rows and links, only the two ends of the longest lines are drawn, so that the page's size stays proportional to
/// the plan's.
class LinkLines {
 public:
  explicit LinkLines(const Rows& rows);

  /// Path data of the lines in one row: for its own links, for links that pass it, and for the heads of arrows; empty
  /// when there are none.
  struct Paths {
    std::string lines;
    std::string passing;
    std::string heads;
  };
  [[nodiscard]] const Paths& of(std::size_t row) const { return paths_[row]; }
  /// The number of links of which only the ends are drawn.
  [[nodiscard]] std::size_t numberOfCut() const { return cut_; }

 private:
  /// A link between two rows with bars.
  struct Link {
    std::size_t from;
    std::size_t to;
    int type;
  };
  /// The vertical part of a link's line, in the rows between.
  struct Vertical {
    double x;
    std::size_t firstRow;
    std::size_t endRow;
  };

  void gather();
  void draw(const Link& link, bool isWhole);
  double drawEntry(const Link& link);
  double drawFromAbove(const Link& link, double arrival);
  double drawFromSide(const Link& link, double left, double arrival);
  void drawVerticals();

  const Rows& rows_;
  std::vector<Paths> paths_;
  std::vector<Link> links_;
  std::vector<Vertical> verticals_;
  std::size_t cut_ = 0;
};

}  // namespace page
