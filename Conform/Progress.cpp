#include "Conform/Progress.h"

#include <string>
#include <unordered_map>
#include <vector>

#include "Conform/Completion.h"
#include "Conform/Copy.h"
#include "Conform/Durations.h"
#include "Conform/Elements.h"
#include "Platform/Base/IdHash.h"

namespace conform {
namespace {

/// Adds a missing date to the parent, unless the given date is empty.
bool fill(pugi::xml_node parent, pugi::xml_node child, const char* name, std::string_view date) {
  return isBlank(textOf(child)) && !isBlank(date) && setText(parent, child, name, date);
}

std::string_view firstOf(std::string_view text, std::string_view otherwise) { return isBlank(text) ? otherwise : text; }

/// Corrections from the exact ratios of the plan.
class FromPlan {
 public:
  explicit FromPlan(Copy& copy) : copy_(copy) { completions_.reserve(copy.tasks.size()); }

  void correct() {
    for (const Item& task : copy_.tasks) {
      completions_.push_back(Completion::ofTask(task.source));
      correctTask(task.element, completions_.back());
    }
    for (const AssignmentItem& assignment : copy_.assignments) correctAssignment(assignment);
    copy_.report.count("percentages of completion", percentages_);
    copy_.report.count("actual dates", dates_);
  }

 private:
  void correctTask(pugi::xml_node task, const Completion& completion) {
    const auto [percent, workPercent, actualStart, actualFinish, start, finish, duration, remainingDuration, work,
                actualWork, remainingWork] =
        childrenOf(task, "PercentComplete", "PercentWorkComplete", "ActualStart", "ActualFinish", "Start", "Finish",
                   "Duration", "RemainingDuration", "Work", "ActualWork", "RemainingWork");
    correctPercent(task, percent, "PercentComplete", completion);
    correctPercent(task, workPercent, "PercentWorkComplete", completion);
    fillDates(task, {actualStart, actualFinish}, {textOf(start), textOf(finish)}, completion);
    if (const auto seconds = secondsOf(textOf(duration))) {
      setText(task, remainingDuration, "RemainingDuration", durationText(*seconds - completion.doneOf(*seconds)));
    }
    divideWork(task, textOf(work), actualWork, remainingWork, completion);
  }

  void correctAssignment(const AssignmentItem& item) {
    const pugi::xml_node assignment = item.element;
    const pugi::xml_node task = copy_.tasks[item.source->task].element;
    const Completion& completion = completions_[item.source->task];
    const auto [percent, actualStart, actualFinish, start, finish, work, actualWork, remainingWork] =
        childrenOf(assignment, "PercentWorkComplete", "ActualStart", "ActualFinish", "Start", "Finish", "Work",
                   "ActualWork", "RemainingWork");
    correctPercent(assignment, percent, "PercentWorkComplete", completion);
    divideWork(assignment, textOf(work), actualWork, remainingWork, completion);
    if (completion.done == 0) return;
    fillDates(assignment, {actualStart, actualFinish},
              {firstOf(textOf(start), textOf(task, "Start")), firstOf(textOf(finish), textOf(task, "Finish"))},
              completion);
  }

  /// A missing percentage counts as 0.
  void correctPercent(pugi::xml_node parent, pugi::xml_node percent, const char* name, const Completion& completion) {
    const std::int64_t rounded = completion.doneOf(100);
    if (rounded > 0 && setText(parent, percent, name, std::to_string(rounded))) ++percentages_;
  }

  struct Elements {
    pugi::xml_node start;
    pugi::xml_node finish;
  };
  struct Dates {
    std::string_view start;
    std::string_view finish;
  };
  void fillDates(pugi::xml_node parent, const Elements& actual, const Dates& dates, const Completion& completion) {
    if (completion.done > 0 && fill(parent, actual.start, "ActualStart", dates.start)) ++dates_;
    const bool isDone = completion.done >= completion.total;
    if (isDone && fill(parent, actual.finish, "ActualFinish", dates.finish)) ++dates_;
  }

  static void divideWork(pugi::xml_node parent, std::string_view work, pugi::xml_node actual, pugi::xml_node remaining,
                         const Completion& completion) {
    const auto seconds = secondsOf(work);
    if (!seconds) return;
    const std::int64_t done = completion.doneOf(*seconds);
    setText(parent, actual, "ActualWork", durationText(done));
    setText(parent, remaining, "RemainingWork", durationText(*seconds - done));
  }

  Copy& copy_;
  std::vector<Completion> completions_;  ///< one for each task
  std::size_t percentages_ = 0;
  std::size_t dates_ = 0;
};

/// Whether a task is 100 percent done and nothing about its work contradicts that.
bool isSimplyDone(pugi::xml_node task) {
  if (textOf(task, "PercentComplete") != "100") return false;
  const auto [duration, work, actual] = childrenOf(task, "RemainingDuration", "RemainingWork", "ActualWork");
  return !duration && !work && !actual;
}

std::size_t fillDatesOf(pugi::xml_node element, pugi::xml_node task) {
  const auto [actualStart, actualFinish, start, finish] =
      childrenOf(element, "ActualStart", "ActualFinish", "Start", "Finish");
  const bool fillsStart = fill(element, actualStart, "ActualStart", firstOf(textOf(start), textOf(task, "Start")));
  const bool fillsFinish = fill(element, actualFinish, "ActualFinish", firstOf(textOf(finish), textOf(task, "Finish")));
  return static_cast<std::size_t>(fillsStart) + static_cast<std::size_t>(fillsFinish);
}

void correctFromPercent(Copy& copy) {
  std::unordered_map<std::string_view, pugi::xml_node, platform::IdHash> done;
  std::size_t dates = 0;
  for (const Item& task : copy.tasks) {
    if (!isSimplyDone(task.element)) continue;
    done.try_emplace(textOf(task.element, "UID"), task.element);
    dates += fillDatesOf(task.element, task.element);
  }
  for (const AssignmentItem& assignment : copy.assignments) {
    const auto task = done.find(textOf(assignment.element, "TaskUID"));
    if (task == done.end()) continue;
    dates += fillDatesOf(assignment.element, task->second);
  }
  copy.report.count("actual dates", dates);
}

}  // namespace

void correctProgress(Copy& copy) {
  if (copy.plan() != nullptr) {
    FromPlan(copy).correct();
  } else {
    correctFromPercent(copy);
  }
}

}  // namespace conform
