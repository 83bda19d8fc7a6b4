#include "Conform/NegativeDurations.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "Conform/Copy.h"
#include "Conform/Durations.h"
#include "Conform/Elements.h"
#include "Conform/Labels.h"

namespace conform {
namespace {

constexpr std::array<const char*, 3> kDurations = {"Duration", "Work", "RemainingWork"};

bool isSame(const char* name, const char* other) {
  // Nearly all names differ in their first letters.
  return name[0] == other[0] && std::strcmp(name, other) == 0;
}

bool isNegativeDuration(pugi::xml_node element, const char* name) {
  const auto isName = [name](const char* duration) { return isSame(name, duration); };
  if (std::none_of(kDurations.begin(), kDurations.end(), isName)) return false;
  const std::string_view text = textOf(element);
  return text.starts_with("PT") && text.find('-') != std::string_view::npos;
}

/// Corrects the durations of a task or an assignment, and of its baselines.
/// @return how many there were.
std::size_t correctBelow(pugi::xml_node element) {
  std::size_t corrected = 0;
  for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
    const char* name = child.name();
    if (isSame(name, "Baseline")) {
      corrected += correctBelow(child);
    } else if (isNegativeDuration(child, name)) {
      setText(child, durationText(0));
      ++corrected;
    }
  }
  return corrected;
}

}  // namespace

void correctNegativeDurations(Copy& copy) {
  std::size_t corrected = 0;
  const auto correct = [&](pugi::xml_node element, auto label) {
    const std::size_t count = correctBelow(element);
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
