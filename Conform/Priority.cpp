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

constexpr std::int64_t kStandard = 500;  ///< also the distance to the lowest and to the highest priority of the format

/// The priorities of a plan on one side of 0, ranked by distance: the nearest to 0 has rank 1.
class Ranks {
 public:
  void add(std::int64_t distance) { distances_.push_back(distance); }
  void sort() {
    std::sort(distances_.begin(), distances_.end());
    distances_.erase(std::unique(distances_.begin(), distances_.end()), distances_.end());
  }
  /// The distance from the standard that a priority gets: more than 0 and less than 500.
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
  /// Whether a later task has the same id; the later one then counts for both.
  static bool isHidden(const Plan& plan, xml::Node task) {
    const xml::Query query = xml::Query::child("task", "id", task.attribute("id").value());
    return !(singleObjectForXQuery(plan.scenario(), query) == task);
  }

  /// The distance of a negative priority from -1. (The distance from 0 of the lowest number would not fit into 64
  /// bits.)
  static std::int64_t fromZero(std::int64_t negative) { return -(negative + 1); }

  void add(std::int64_t priority) {
    if (priority > 0) above_.add(priority);
    if (priority < 0) below_.add(fromZero(priority));
  }

  std::unordered_map<const void*, std::int64_t> given_;  ///< the priorities of the tasks, where not 0
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
