#include "KVMSPCommon/MSPExportMapper/MSPETaskMapper.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEBaselineMapperBase.h"
#include "KVMSPCommon/MSPExportMapper/MSPENoteMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEUserDataMapper.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/Log.h"
#include "Platform/Text/Texts.h"

using platform::log;
using platform::orEmpty;
using platform::require;

namespace {

/// MSPDI task types by the source's "recalculate"; a task without it counts as "duration".
struct TaskTypeRow {
  std::string_view recalculate;
  std::string_view type;
  std::int32_t recordsRecalculate;
  bool mayBeEffortDriven;
};
constexpr std::array<TaskTypeRow, 3> kTaskTypes = {{{"duration", "0", MSPEScheduledTaskInfo::kDuration, true},
                                                    {"effort", "1", MSPEScheduledTaskInfo::kEffort, false},
                                                    {"units", "2", MSPEScheduledTaskInfo::kUnits, true}}};

/// MSPDI link types by the kind of a prerequisite.
std::string_view linkType(std::int32_t kind) {
  switch (kind) {
    case MSPEScheduledTaskInfo::kStartToFinish:
      return "2";
    case MSPEScheduledTaskInfo::kStartToStart:
      return "3";
    case MSPEScheduledTaskInfo::kFinishToFinish:
      return "0";
    default:
      return "1";
  }
}

constexpr const char* kAsSoonAsPossible = "0";
constexpr const char* kAsLateAsPossible = "1";
constexpr const char* kMustStartOn = "2";
constexpr const char* kMustFinishOn = "3";
constexpr const char* kStartNoEarlierThan = "4";
constexpr const char* kStartNoLaterThan = "5";
constexpr const char* kFinishNoEarlierThan = "6";
constexpr const char* kFinishNoLaterThan = "7";

constexpr std::int64_t kMaximumPriority = 1000;
constexpr std::int64_t kMiddlePriority = 500;
constexpr double kSecondsPerTenthOfMinute = 6;
constexpr std::string_view kPercentLagFormat = "19";

}  // namespace

xml::Element MSPETaskMapper::newTaskFromKVDXTask(xml::Node kvdxTask, xml::Node parentTask) {
  xml::Element element = elementWithName("Task", mapper());
  const xml::OutputNode task = element;
  const auto id = kvdxTask.attributeText("id");
  require(id.has_value(), "Task <{}> has no 'id' attribute.", fmt::ptr(kvdxTask.identity()));
  auto title = stringValueForXQuery(kvdxTask, "title");
  if (title) title = stringByReplacingOccurrencesOfNewline(*title);
  if (parentTask) {
    log("  Mapping Task id='{}' name='{}' ...", *id, orEmpty(title));
  } else {
    log("  Mapping Top Task id='{}' ...", *id);
  }

  appendIdentity(task, *id);  // UID, ID
  if (title) addChildElementWithName(task, "Name", *title);
  appendSchedule(task, kvdxTask);  // Type to ConstraintDate
  XQueryError error;
  const bool splittable = boolValueForXQuery(kvdxTask, "splittable", &error);
  addChildElementWithName(task, "LevelingCanSplit", mspdiFlag(splittable || error));
  addChildElementWithName(task, "IgnoreResourceCalendar", "1");
  MSPENoteMapper(mapper()).appendNotes(task, kvdxTask);                         // Notes
  appendPredecessorLinks(task);                                                 // PredecessorLink
  MSPEUserDataMapper(mapper(), true).appendExtendedAttributes(task, kvdxTask);  // ExtendedAttribute
  addChildElementWithName(task, "Active", "1");
  addChildElementWithName(task, "Manual", "0");
  appendBaselines(task, kvdxTask);  // Baseline
  return element;
}

void MSPETaskMapper::appendIdentity(xml::OutputNode task, const std::string& id) {
  const std::string uid = mapper().idMapper()->taskUIDFromKvdxId(id);
  addChildElementWithName(task, "UID", uid);
  const std::string number = std::to_string(MSPEMapper::nextTaskID());
  addChildElementWithName(task, "ID", number);
  const bool isNew = mapper().projectMapper()->recordTask(uid, number);
  require(isNew, "Duplicated Task UID='{}' found (kvdx Task id='{}').", uid, id);
  taskInfo_ = &mapper().projectMapper()->scheduledTask(id);
  require(taskInfo_->uid() == id, "Task, retrieved from the list of scheduled tasks by id='{}', has different id='{}'",
          id, taskInfo_->uid());
}

void MSPETaskMapper::appendSchedule(xml::OutputNode task, xml::Node kvdxTask) {
  const MSPEScheduledTaskInfo& info = *taskInfo_;
  const auto recalculate = stringValueForXQuery(kvdxTask, "recalculate");
  const std::string_view recalculateText = recalculate ? std::string_view(*recalculate) : "duration";
  bool effortDriven = false;
  const auto* row = std::find_if(kTaskTypes.begin(), kTaskTypes.end(), [recalculateText](const TaskTypeRow& candidate) {
    return candidate.recalculate == recalculateText;
  });
  if (row != kTaskTypes.end()) {
    require(info.recalculate() == row->recordsRecalculate, "Unexpected task recalculate value ({}) in task info.",
            info.recalculate());
    addChildElementWithName(task, "Type", row->type);
    effortDriven = row->mayBeEffortDriven && info.taskType() == MSPEScheduledTaskInfo::kTask;
  } else {
    require(recalculateText == "something_else", "kvdxRecalculate is undefined");
  }

  addChildElementWithName(task, "IsNull", "0");
  addChildElementWithName(task, "Priority", std::to_string(mspdiPriority()));
  const auto start = MSPIUtilities::mppToMspdiDateTime(info.startDate());
  if (start) addChildElementWithName(task, "Start", *start);
  const auto finish = MSPIUtilities::mppToMspdiDateTime(info.endDate());
  if (finish) addChildElementWithName(task, "Finish", *finish);
  addChildElementWithName(task, "Duration", MSPIUtilities::mppToMspdiDuration(info.duration()));
  addChildElementWithName(task, "Work", MSPIUtilities::mppToMspdiDuration(info.effort()));
  addChildElementWithName(task, "EffortDriven", mspdiFlag(effortDriven));
  XQueryError error;
  const double cost = floatValueForXQuery(kvdxTask, "static-cost", &error);
  if (!error) addChildElementWithName(task, "FixedCost", platform::fixedPoint(cost * 100, 2));
  addChildElementWithName(task, "Estimated", "0");
  addChildElementWithName(task, "Milestone", mspdiFlag(info.taskType() == MSPEScheduledTaskInfo::kMilestone));
  addChildElementWithName(task, "Summary", mspdiFlag(info.taskType() == MSPEScheduledTaskInfo::kGroup));
  appendCompletion(task);         // PercentComplete, PercentWorkComplete
  appendConstraint(task, start);  // ConstraintType, ConstraintDate
}

/// The priority, scaled from the project's range, which always includes 0, to MSPDI's range of 0 to 1000. With
/// priorities from -2 to 2: -2 gives 0, 1 gives 750.
std::int64_t MSPETaskMapper::mspdiPriority() const {
  const std::int64_t lowest = mapper().projectMapper()->minTaskPriortiy();
  const std::int64_t highest = mapper().projectMapper()->maxTaskPriortiy();
  if (highest <= lowest) return kMiddlePriority;
  const platform::Wide above = static_cast<platform::Wide>(taskInfo_->priority()) - lowest;
  return static_cast<std::int64_t>(above * kMaximumPriority / (static_cast<platform::Wide>(highest) - lowest));
}

void MSPETaskMapper::appendCompletion(xml::OutputNode task) const {
  const std::int32_t percent = taskInfo_->percentComplete();
  if (percent <= 0) return;
  addChildElementWithName(task, "PercentComplete", std::to_string(percent));
  addChildElementWithName(task, "PercentWorkComplete", std::to_string(percent));
}

bool MSPETaskMapper::isForwardScheduled() const {
  switch (taskInfo_->scheduleType()) {
    case MSPEScheduledTaskInfo::kProjectDirection:
      return mapper().projectMapper()->scheduleFromStart();
    case MSPEScheduledTaskInfo::kAsLateAsPossible:
      return false;
    default:
      return true;
  }
}

void MSPETaskMapper::appendConstraint(xml::OutputNode task, const std::optional<std::string>& start) const {
  const MSPEScheduledTaskInfo& info = *taskInfo_;
  const auto lockedStart = info.lockedStartDate();
  const auto lockedEnd = info.lockedEndDate();
  const auto noEarlier = info.noEarlierThanConstraintDate();
  const auto noLater = info.noLaterThanConstraintDate();
  const bool forward = isForwardScheduled();

  if (lockedStart && (forward || !lockedEnd)) {
    appendDateConstraint(task, kMustStartOn, lockedStart);
  } else if (lockedEnd) {
    appendDateConstraint(task, kMustFinishOn, lockedEnd);
  } else if (noEarlier && (forward || !noLater)) {
    appendDateConstraint(task, info.noEarlierThanConstrainedTaskEnd() != 0 ? kFinishNoEarlierThan : kStartNoEarlierThan,
                         noEarlier);
  } else if (noLater) {
    appendDateConstraint(task, info.noLaterThanConstrainedTaskEnd() != 0 ? kFinishNoLaterThan : kStartNoLaterThan,
                         noLater);
  } else if (info.scheduleType() == MSPEScheduledTaskInfo::kAsSoonAsPossible) {
    addChildElementWithName(task, "ConstraintType", kAsSoonAsPossible);
  } else if (info.scheduleType() == MSPEScheduledTaskInfo::kAsLateAsPossible) {
    addChildElementWithName(task, "ConstraintType", kAsLateAsPossible);
  } else if (info.leveledStart() && info.taskType() != MSPEScheduledTaskInfo::kGroup) {
    // Leveling moved the task, so a constraint keeps it where it is.
    addChildElementWithName(task, "ConstraintType", forward ? kStartNoEarlierThan : kStartNoLaterThan);
    addChildElementWithName(task, "ConstraintDate", start);
  }
}

void MSPETaskMapper::appendDateConstraint(xml::OutputNode task, const char* type,
                                          std::optional<platform::Instant> date) const {
  addChildElementWithName(task, "ConstraintType", type);
  if (const auto text = MSPIUtilities::mppToMspdiDateTime(date)) addChildElementWithName(task, "ConstraintDate", *text);
}

void MSPETaskMapper::appendPredecessorLinks(xml::OutputNode task) const {
  for (const auto& prerequisite : taskInfo_->prerequisites()) {
    const xml::OutputNode link = addChildElementWithName(task, "PredecessorLink");
    if (prerequisite.predecessorId) {
      addChildElementWithName(link, "PredecessorUID",
                              mapper().idMapper()->taskUIDFromKvdxId(*prerequisite.predecessorId));
    }
    addChildElementWithName(link, "Type", linkType(prerequisite.kind));
    if (prerequisite.leadTime == 0) continue;
    const double lag =
        prerequisite.isPercentage ? prerequisite.leadTime * 100 : prerequisite.leadTime / kSecondsPerTenthOfMinute;
    addChildElementWithName(link, "LinkLag", std::to_string(platform::truncated<std::int64_t>(lag)));
    if (prerequisite.isPercentage) addChildElementWithName(link, "LagFormat", kPercentLagFormat);
  }
}

void MSPETaskMapper::appendBaselines(xml::OutputNode task, xml::Node kvdxTask) const {
  const std::size_t count = mapper().kvdxBaselines().size();
  if (count == 0) return;
  log("  Mapping {} baselines for Task ...", count);
  appendEachBaseline(task, mapper(), [&](std::int64_t n) {
    return MSPETaskBaselineMapper(n, mapper()).newBaselineFromKvdxTask(kvdxTask);
  });
}
