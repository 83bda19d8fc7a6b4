#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Page/Rows.h"

namespace page {

/// The arrows of links, cut into the part of each row: so rows can be folded away and break across printed pages, and
/// the lines go on. Lines that lie on each other are one. The longest lines are drawn at their two ends alone when all
/// parts together would be many times the rows and links: so the page's size stays in proportion to the plan's.
class LinkLines {
 public:
  explicit LinkLines(const Rows& rows);

  /// Path data of a row's part of the lines: of its own links, of those that pass it, and of the heads of arrows; empty
  /// when there are none.
  struct Paths {
    std::string lines;
    std::string passing;
    std::string heads;
  };
  [[nodiscard]] const Paths& of(std::size_t row) const { return paths_[row]; }
  /// How many links are drawn at their ends alone.
  [[nodiscard]] std::size_t numberOfCut() const { return cut_; }

 private:
  /// A link between two rows with bars.
  struct Link {
    std::size_t from;
    std::size_t to;
    int type;
  };
  /// Where a link's line goes down or up through the rows between.
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
