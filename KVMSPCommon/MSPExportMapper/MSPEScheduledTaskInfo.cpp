#include "KVMSPCommon/MSPExportMapper/MSPEScheduledTaskInfo.h"

#include <fmt/format.h>

#include <array>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"

using platform::Instant;
using platform::require;

namespace {

struct Code {
  std::string_view text;
  std::int32_t value;
};

using Info = MSPEScheduledTaskInfo;
constexpr std::array<Code, 4> kTaskTypes = {
    {{"task", Info::kTask}, {"milestone", Info::kMilestone}, {"group", Info::kGroup}, {"hammock", Info::kHammock}}};
constexpr std::array<Code, 2> kScheduleTypes = {{{"asap", Info::kAsSoonAsPossible}, {"alap", Info::kAsLateAsPossible}}};
constexpr std::array<Code, 3> kRecalculates = {
    {{"duration", Info::kDuration}, {"effort", Info::kEffort}, {"units", Info::kUnits}}};
constexpr std::array<Code, 4> kPrerequisiteKinds = {{{"FS", Info::kFinishToStart},
                                                     {"SF", Info::kStartToFinish},
                                                     {"SS", Info::kStartToStart},
                                                     {"FF", Info::kFinishToFinish}}};

/// The code for the text; 0 for a missing or unknown text.
template <std::size_t N>
std::int32_t codeOf(const std::array<Code, N>& codes, std::string_view text) {
  for (const Code& code : codes) {
    if (text == code.text) return code.value;
  }
  return 0;
}

template <std::size_t N>
std::int32_t codeAt(xml::Node task, const xml::Query& query, const std::array<Code, N>& codes) {
  return codeOf(codes, singleObjectForXQuery(task, query).stringView());
}

std::optional<Instant> instantOf(xml::Node date) {
  return MSPIUtilities::kvdxToMppDateTimeByWallClock(date.stringView());
}

std::optional<Instant> instantAt(xml::Node task, const xml::Query& query) {
  return instantOf(singleObjectForXQuery(task, query));
}

/// A date constraint, from the element for the task's start or, when that is missing, from the one for its end.
struct Constraint {
  std::optional<Instant> date;
  std::int32_t constrainsEnd = 0;
};

Constraint constraintAt(xml::Node task, const xml::Query& startQuery, const xml::Query& endQuery) {
  if (const xml::Node start = singleObjectForXQuery(task, startQuery)) return {instantOf(start), 0};
  if (const xml::Node end = singleObjectForXQuery(task, endQuery)) return {instantOf(end), 1};
  return {};
}

}  // namespace

MSPEScheduledTaskInfo::MSPEScheduledTaskInfo(xml::Node kvdxTask, xml::Node /*kvdxScenario*/)
    : leveledStart_(instantAt(kvdxTask, "leveled-start")) {
  XQueryError error;
  const xml::Node start = singleObjectForXQuery(kvdxTask, "start-date", &error);
  startDate_ = instantOf(start);
  require(start && !error, "Task element 'start-date' not found.");
  error = {};
  const xml::Node end = singleObjectForXQuery(kvdxTask, "end-date", &error);
  endDate_ = instantOf(end);
  require(end && !error, "Task element 'end-date' not found.");
  error = {};
  duration_ = floatValueForXQuery(kvdxTask, "duration", &error);
  require(!error, "Task element 'duration' not found.");

  const auto id = kvdxTask.attributeText("id");
  require(id.has_value(), "Task attribute 'id' not found.");
  uid_ = *id;

  scheduleType_ = codeAt(kvdxTask, "schedule-type", kScheduleTypes);
  priority_ = intValueForXQuery(kvdxTask, "priority");
  effort_ = static_cast<double>(intValueForXQuery(kvdxTask, "effort"));
  effortDone_ = static_cast<double>(intValueForXQuery(kvdxTask, "effort-done"));
  taskType_ = codeAt(kvdxTask, "type", kTaskTypes);
  completionPercentage_ = floatValueForXQuery(kvdxTask, "completion-percentage");
  lockedStartDate_ = instantAt(kvdxTask, "locked-start-date");
  lockedEndDate_ = instantAt(kvdxTask, "locked-end-date");
  readConstraints(kvdxTask);
  recalculate_ = codeAt(kvdxTask, "recalculate", kRecalculates);
  readPrerequisites(kvdxTask);
  if (taskType_ == kGroup) {
    for (const xml::Node child : objectsForXQuery(kvdxTask, "child-task")) {
      if (auto reference = child.attributeText("idref")) childTaskUIDs_.push_back(std::move(*reference));
    }
  }
}

void MSPEScheduledTaskInfo::readConstraints(xml::Node kvdxTask) {
  const Constraint noEarlier = constraintAt(kvdxTask, "start-no-earlier-than", "end-no-earlier-than");
  const Constraint noLater = constraintAt(kvdxTask, "start-no-later-than", "end-no-later-than");
  noEarlierThanConstrainedTaskEnd_ = noEarlier.constrainsEnd;
  noLaterThanConstrainedTaskEnd_ = noLater.constrainsEnd;

  // Only the newer elements count, and one of them sets both dates; without them there is no constraint.
  const Constraint constraint = constraintAt(kvdxTask, "start-constraint-date", "end-constraint-date");
  noEarlierThan_ = constraint.date;
  noLaterThan_ = constraint.date;
  if (constraint.date) {
    noEarlierThanConstrainedTaskEnd_ = constraint.constrainsEnd;
    noLaterThanConstrainedTaskEnd_ = constraint.constrainsEnd;
  }
}

void MSPEScheduledTaskInfo::readPrerequisites(xml::Node kvdxTask) {
  for (const xml::Node element : objectsForXQuery(kvdxTask, "prerequisite-task")) {
    Prerequisite& prerequisite = prerequisites_.emplace_back();
    prerequisite.predecessorId = element.attributeText("idref");
    prerequisite.external = element.attributeText("external");
    prerequisite.kind = codeOf(kPrerequisiteKinds, element.attribute("kind").value());
    prerequisite.isResourceDependency = boolValueForXQuery(element, "is-resource-dependency");
    if (const xml::Node leadTime = singleObjectForXQuery(element, "lead-time")) {
      prerequisite.leadTime = platform::doubleValue(leadTime.stringView());
      prerequisite.isPercentage = leadTime.attribute("is-percentage").value() == "true";
    }
  }
}

double MSPEScheduledTaskInfo::percentageComplete() const {
  double complete = completionPercentage_ > 0 ? completionPercentage_ : 0;
  if (effort_ > 0 && effortDone_ > 0) complete = effortDone_ / effort_;
  require(complete >= 0.0 && complete <= 1.0, "Incorrect value of percentComplete ({:f}). Must be from 0.0 to 1.0.",
          complete);
  return complete;
}

std::int32_t MSPEScheduledTaskInfo::percentComplete() const {
  return platform::truncated<std::int32_t>(percentageComplete() * 100);
}

std::string MSPEScheduledTaskInfo::description() const {
  return fmt::format("MSPEScheduledTaskInfo uid='{}' taskType={} scheduleType={} startDate={} endDate={}", uid_,
                     taskType_, scheduleType_, platform::orNull(MSPIUtilities::mppToMspdiDateTime(startDate_)),
                     platform::orNull(MSPIUtilities::mppToMspdiDateTime(endDate_)));
}
