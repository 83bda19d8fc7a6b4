#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Conform/PlanFile.h"
#include "Page/Timeline.h"
#include "Platform/Base/IdHash.h"

namespace page {

/// A row of the page: a task, its place in the tree and its place in the chart.
struct Row {
  const conform::FileTask* task = nullptr;
  std::string number;     ///< the task's `ID`; its position in the file when it has none
  std::size_t depth = 0;  ///< how many tasks are above it in the tree
  bool isGroup = false;   ///< whether there are tasks below it, or the file says so
  bool isHidden = false;  ///< whether it is below a group that is folded at first
  bool hasBar = false;    ///< whether the task has a date; when it has only one, that is both its start and its finish
  double from = 0;        ///< of the bar, in the chart's units
  double to = 0;
  std::vector<const conform::FileAssignment*> assignments;
};

/// The rows of a plan, in the order of the file. A task's parent is the nearest task before it with a lower level.
class Rows {
 public:
  Rows(const conform::PlanFile& plan, const Timeline& timeline);

  [[nodiscard]] const std::vector<Row>& list() const { return rows_; }
  /// Index of the row of the task with the UID; `list().size()` when there is none.
  [[nodiscard]] std::size_t indexOf(std::string_view uid) const;
  /// The number of rows that are folded when the page opens.
  [[nodiscard]] std::size_t numberOfHidden() const { return hidden_; }

 private:
  void nest();
  void fold();
  void place(const Timeline& timeline);

  std::vector<Row> rows_;
  std::unordered_map<std::string_view, std::size_t, platform::IdHash> indices_;
  std::size_t hidden_ = 0;
};

}  // namespace page
