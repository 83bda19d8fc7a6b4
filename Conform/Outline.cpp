#include "Conform/Outline.h"

#include <fmt/format.h>

#include <string>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Failure.h"
#include "Conform/Labels.h"

namespace conform {
namespace {

constexpr std::int64_t kMaximumLevel = 2000;

/// Numbers tasks in the order of the file.
class Numbering {
 public:
  /// @param level 1 and more; 0 is the project's own task.
  [[nodiscard]] std::string next(std::size_t level) {
    if (level == 0) return "0";
    if (level <= counts_.size()) {
      counts_.resize(level);
      ++counts_.back();
    } else {
      counts_.resize(level, 1);
    }
    return fmt::format("{}", fmt::join(counts_, "."));
  }

 private:
  std::vector<std::size_t> counts_;  ///< the numbers on each level, down to the level of the last task
};

std::size_t levelOf(const Item& task, std::string_view text) {
  const std::int64_t level = wholeNumber(text).value_or(0);
  if (level > kMaximumLevel) {
    fail(fmt::format("{} has OutlineLevel {}, which is above {}", labelOf(task), level, kMaximumLevel));
  }
  return static_cast<std::size_t>(level);
}

}  // namespace

void correctOutline(Copy& copy) {
  Numbering numbering;
  std::size_t changed = 0;
  for (const Item& task : copy.tasks) {
    const auto [level, wbs, number] = childrenOf(task.element, "OutlineLevel", "WBS", "OutlineNumber");
    const std::string text = numbering.next(levelOf(task, textOf(level)));
    setText(task.element, wbs, "WBS", text);
    if (setText(task.element, number, "OutlineNumber", text)) ++changed;
  }
  copy.report.count("outline numbers", changed);
}

}  // namespace conform
