#include "Conform/NegativeDurations.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "Conform/Copy.h"
#include "Conform/Durations.h"
#include "Conform/Elements.h"
#include "Conform/Labels.h"

namespace conform {
namespace {

/// Corrects the element's own durations.
/// @return how many there were.
std::size_t correctOwn(pugi::xml_node element) {
  std::size_t corrected = 0;
  for (const pugi::xml_node duration : childrenOf(element, "Duration", "Work", "RemainingWork")) {
    const std::string_view text = textOf(duration);
    if (!text.starts_with("PT") || text.find('-') == std::string_view::npos) continue;
    setText(duration, durationText(0));
    ++corrected;
  }
  return corrected;
}

/// Corrects the durations of a task or an assignment and of its baselines.
std::size_t correctAll(pugi::xml_node element) {
  std::size_t corrected = correctOwn(element);
  for (const pugi::xml_node baseline : element.children("Baseline")) corrected += correctOwn(baseline);
  return corrected;
}

}  // namespace

void correctNegativeDurations(Copy& copy) {
  std::size_t corrected = 0;
  const auto correct = [&](pugi::xml_node element, auto label) {
    const std::size_t count = correctAll(element);
    if (count > 0) copy.report.warn(label() + ": PT0H0M0S is written for its negative durations");
    corrected += count;
  };
  for (const Item& task : copy.tasks) {
    correct(task.element, [&] { return labelOf(task); });
  }
  for (const AssignmentItem& assignment : copy.assignments) {
    correct(assignment.element, [&] { return fmt::format("assignment {}", textOf(assignment.element, "UID")); });
  }
  copy.report.count("negative durations", corrected);
}

}  // namespace conform
