#include "Page/Rows.h"

#include <algorithm>

namespace page {
namespace {

/// With more rows than this, the page begins with groups folded.
constexpr std::size_t kMostUnfolded = 1000;

}  // namespace

Rows::Rows(const conform::PlanFile& plan, const Timeline& timeline) {
  rows_.reserve(plan.tasks.size());
  for (const conform::FileTask& task : plan.tasks) {
    indices_.emplace(task.uid, rows_.size());
    Row row;
    row.task = &task;
    row.number = task.number.empty() ? std::to_string(rows_.size()) : task.number;
    rows_.push_back(std::move(row));
  }
  for (const conform::FileAssignment& assignment : plan.assignments) {
    const std::size_t index = indexOf(assignment.taskUid);
    if (index < rows_.size()) rows_[index].assignments.push_back(&assignment);
  }
  nest();
  fold();
  place(timeline);
}

std::size_t Rows::indexOf(std::string_view uid) const {
  const auto found = indices_.find(uid);
  return found == indices_.end() ? rows_.size() : found->second;
}

void Rows::nest() {
  std::vector<std::size_t> above;
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    while (!above.empty() && rows_[above.back()].task->level >= rows_[i].task->level) above.pop_back();
    rows_[i].depth = above.size();
    rows_[i].isGroup = rows_[i].task->isSummary;
    if (!above.empty()) rows_[above.back()].isGroup = true;
    above.push_back(i);
  }
}

/// Hides the deepest levels of rows, as many as necessary.
void Rows::fold() {
  std::vector<std::size_t> rowsAtDepth;
  for (const Row& row : rows_) {
    rowsAtDepth.resize(std::max(rowsAtDepth.size(), row.depth + 1));
    ++rowsAtDepth[row.depth];
  }
  std::size_t shown = 0;
  std::size_t deepest = 0;
  for (; deepest < rowsAtDepth.size(); ++deepest) {
    shown += rowsAtDepth[deepest];
    if (shown > kMostUnfolded && deepest > 0) break;
  }
  for (Row& row : rows_) {
    row.isHidden = row.depth >= deepest;
    if (row.isHidden) ++hidden_;
  }
}

void Rows::place(const Timeline& timeline) {
  for (Row& row : rows_) {
    const auto& start = row.task->start ? row.task->start : row.task->finish;
    const auto& finish = row.task->finish ? row.task->finish : row.task->start;
    row.hasBar = start.has_value();
    if (!row.hasBar) continue;
    row.from = timeline.xOf(std::min(*start, *finish));
    row.to = timeline.xOf(std::max(*start, *finish));
  }
}

}  // namespace page
