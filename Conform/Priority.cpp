#include "Conform/Priority.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "KVMSPCommon/MSPCExtensions.h"

namespace conform {
namespace {

constexpr std::int64_t kStandard = 500;  ///< and as far from the lowest as from the highest that there is

/// The priorities of a plan on the one side of 0, as ranks: 1 for the nearest to it.
class Ranks {
 public:
  void add(std::int64_t distance) { distances_.push_back(distance); }
  void sort() {
    std::sort(distances_.begin(), distances_.end());
    distances_.erase(std::unique(distances_.begin(), distances_.end()), distances_.end());
  }
  /// How far from the standard a priority is to be: between 0 and 500, these two excluded.
  [[nodiscard]] std::int64_t distanceFor(std::int64_t distance) const {
    const auto rank = std::lower_bound(distances_.begin(), distances_.end(), distance) - distances_.begin() + 1;
    const auto steps = static_cast<std::int64_t>(distances_.size()) + 1;
    return std::max<std::int64_t>(1, kStandard * rank / steps);
  }

 private:
  std::vector<std::int64_t> distances_;
};

class Priorities {
 public:
  explicit Priorities(const Plan& plan) {
    for (const xml::Node task : objectsForXQuery(plan.scenario(), "task")) {
      const std::int64_t priority = intValueForXQuery(task, "priority");
      if (priority == 0 || isHidden(plan, task)) continue;
      given_.emplace(task.identity(), priority);
      add(priority);
    }
    above_.sort();
    below_.sort();
  }

  /// The format's priority for a task of the plan.
  [[nodiscard]] std::int64_t published(xml::Node task) const {
    const auto given = given_.find(task.identity());
    if (given == given_.end()) return kStandard;
    const std::int64_t priority = given->second;
    if (priority > 0) return kStandard + above_.distanceFor(priority);
    return kStandard - below_.distanceFor(fromZero(priority));
  }

 private:
  /// Whether a later task has its id, which then stands for both.
  static bool isHidden(const Plan& plan, xml::Node task) {
    const xml::Query query = xml::Query::child("task", "id", task.attribute("id").value());
    return !(singleObjectForXQuery(plan.scenario(), query) == task);
  }

  /// How far a negative priority is from -1: that of the lowest one of 64 bits is a number, too.
  static std::int64_t fromZero(std::int64_t negative) { return -(negative + 1); }

  void add(std::int64_t priority) {
    if (priority > 0) above_.add(priority);
    if (priority < 0) below_.add(fromZero(priority));
  }

  std::unordered_map<const void*, std::int64_t> given_;  ///< of the tasks that have one other than 0
  Ranks above_;
  Ranks below_;
};

}  // namespace

void correctPriorities(Copy& copy) {
  if (copy.plan() == nullptr) return;
  const Priorities priorities(*copy.plan());
  std::size_t changed = 0;
  for (const Item& task : copy.tasks) {
    const std::string priority = std::to_string(priorities.published(task.source));
    if (setText(task.element, task.element.child("Priority"), "Priority", priority)) ++changed;
  }
  copy.report.count("priorities", changed);
}

}  // namespace conform
