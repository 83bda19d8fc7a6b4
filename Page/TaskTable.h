#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Conform/PlanFile.h"
#include "Page/LinkLines.h"
#include "Page/Rows.h"
#include "Page/Timeline.h"
#include "Platform/Base/IdHash.h"

namespace page {

/// The table's body, written in parts: a row for each task with its values and its part of the chart.
class TaskTable {
 public:
  TaskTable(const conform::PlanFile& plan, const Rows& rows, const LinkLines& links, const Timeline& timeline);

  void write(const std::function<void(std::string_view)>& sink) const;

 private:
  void addPart(std::string& to, std::size_t first, std::size_t end) const;
  void addRow(std::string& to, std::size_t index) const;
  void addName(std::string& to, const Row& row, std::size_t index) const;
  void addLinks(std::string& to, const conform::FileTask& task) const;
  void addResources(std::string& to, const Row& row) const;
  [[nodiscard]] std::string assignedText(const conform::FileAssignment& assignment) const;

  const conform::PlanFile& plan_;
  const Rows& rows_;
  const LinkLines& links_;
  const Timeline& timeline_;
  std::unordered_map<std::string_view, const conform::FileResource*, platform::IdHash> resources_;
};

}  // namespace page
