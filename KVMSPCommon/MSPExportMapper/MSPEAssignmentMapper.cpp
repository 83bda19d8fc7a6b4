#include "KVMSPCommon/MSPExportMapper/MSPEAssignmentMapper.h"

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEBaselineMapperBase.h"
#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPETimephasedDataMapper.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"

using platform::orEmpty;
using platform::require;

namespace {

constexpr std::string_view kPlaceholderResourceUID = "-65535";
constexpr double kSecondsPerMaterialUnit = platform::kSecondsPerHour;

std::string resourceIdOf(xml::Node kvdxAssignment) {
  auto id = kvdxAssignment.attributeText("idref");
  require(id && !id->empty(), "No Resource ID is associated witgh the Assignment.");  // spelled so on purpose
  return std::move(*id);
}

void appendProgress(xml::OutputNode assignment, const MSPEScheduledTaskInfo& info) {
  addChildElementWithName(assignment, "Milestone", mspdiFlag(info.taskType() == MSPEScheduledTaskInfo::kMilestone));
  const std::int32_t percent = info.percentComplete();
  if (percent > 0) addChildElementWithName(assignment, "PercentWorkComplete", std::to_string(percent));
}

void appendWork(xml::OutputNode assignment, const MSPEScheduledTaskInfo& info, double work) {
  const double complete = info.percentageComplete();
  addChildElementWithName(assignment, "Work", MSPIUtilities::mppToMspdiDuration(work));
  addChildElementWithName(assignment, "RemainingWork",
                          MSPIUtilities::mppToMspdiDuration(complete != 0 ? (1 - complete) * work : work));
}

/// The work of one assignment, when the effort is shared in proportion to the units.
double shareOf(double effort, double units, double sumOfUnits) {
  return sumOfUnits > 0 ? effort * units / sumOfUnits : effort;
}

}  // namespace

MSPEAssignmentMapper::MSPEAssignmentMapper(MSPEMapper& mapper, xml::Node kvdxTask) : MSPEObjectMapperBase(mapper) {
  const auto taskId = kvdxTask.attributeText("id");
  require(taskId && !taskId->empty(), "No Task ID is associated witgh the Assignment.");  // spelled so on purpose
  for (const xml::Node assignment : objectsForXQuery(kvdxTask, "assignment")) {
    const auto unitsText = assignment.attributeText("units");
    const double units = unitsText ? platform::doubleValue(*unitsText) : 1.0;
    const std::string resourceId = resourceIdOf(assignment);
    const auto& type = mapper.projectMapper()->resourceType(assignedResource(resourceId));
    require(type.has_value(), "No type specified for assigned resourse (id='{}').", resourceId);
    if (const auto place = placeOfResourceType(*type)) unitsOfType_[*place] += units;
  }
  taskInfo_ = &mapper.projectMapper()->scheduledTask(*taskId);
  taskUID_ = mapper.idMapper()->taskUIDFromKvdxId(*taskId);
}

xml::Node MSPEAssignmentMapper::assignedResource(const std::string& resourceId) const {
  const xml::Node resource =
      singleObjectForXQuery(mapper().projectMapper()->kvdxScenario(), xml::Query::child("resource", "id", resourceId));
  require(static_cast<bool>(resource), "Failed to find assigned resourse (id='{}').", resourceId);
  return resource;
}

double MSPEAssignmentMapper::workOfAssignment(const std::optional<std::string>& resourceType, double units,
                                              double effort) const {
  if (resourceType == kMaterialResource) return units * kSecondsPerMaterialUnit;
  const auto place = placeOfResourceType(platform::orEmpty(resourceType));
  return place ? shareOf(effort, units, unitsOfType_[*place]) : effort;
}

xml::Element MSPEAssignmentMapper::newAssignmentFromKVDXAssignment(xml::Node kvdxAssignment) {
  xml::Element element = elementWithName("Assignment", mapper());
  const xml::OutputNode assignment = element;
  UID_ = MSPEMapper::nextAssignmentUID();
  addChildElementWithName(assignment, "UID", std::to_string(UID_));
  addChildElementWithName(assignment, "TaskUID", taskUID_);
  const std::string resourceId = resourceIdOf(kvdxAssignment);
  addChildElementWithName(assignment, "ResourceUID", mapper().idMapper()->resourceUIDFromKvdxResourceId(resourceId));

  const MSPEScheduledTaskInfo& info = *taskInfo_;
  appendProgress(assignment, info);  // Milestone, PercentWorkComplete
  std::string units = kvdxAssignment.attributeText("units").value_or("");
  if (units.empty()) units = "1";
  addChildElementWithName(assignment, "Units", units);
  const xml::Node resource = assignedResource(resourceId);
  const auto& resourceType = mapper().projectMapper()->resourceType(resource);
  const double work = workOfAssignment(resourceType, platform::doubleValue(units), info.effort());
  appendWork(assignment, info, work);  // Work, RemainingWork
  addChildElementWithName(assignment, "Start", MSPIUtilities::mppToMspdiDateTime(info.startDate()));
  addChildElementWithName(assignment, "Finish", MSPIUtilities::mppToMspdiDateTime(info.endDate()));

  appendEachBaseline(assignment, mapper(), [&](std::int64_t n) {
    return MSPEAssignmentBaselineMapper(n, mapper()).newBaselineFromKvdxAssignment(kvdxAssignment);
  });
  if (resourceType == kMaterialResource) {
    const auto start = MSPIUtilities::mppToKvdxDateTime(info.startDate());
    const auto finish = MSPIUtilities::mppToKvdxDateTime(info.endDate());
    auto timephased = MSPETimephasedDataMapper(mapper()).newTimephasedDataFromAssignment(
        kvdxAssignment, resource, orEmpty(start), orEmpty(finish), work);
    if (timephased) MSPETimephasedDataMapper::appendToAssignment(assignment, UID_, std::move(*timephased));
  }
  return element;
}

xml::Element MSPEAssignmentMapper::newDummyAssignmentForTaskId(const std::string& taskId, std::int64_t* assignmentUID,
                                                               MSPEMapper& mapper) {
  const MSPEScheduledTaskInfo& info = mapper.projectMapper()->scheduledTask(taskId);
  const auto start = MSPIUtilities::mppToMspdiDateTime(info.startDate());
  const auto finish = MSPIUtilities::mppToMspdiDateTime(info.endDate());
  const std::string taskUID = mapper.idMapper()->taskUIDFromKvdxId(taskId);

  xml::Element element = elementWithName("Assignment", mapper);
  const xml::OutputNode assignment = element;
  const std::int64_t uid = MSPEMapper::nextAssignmentUID();
  addChildElementWithName(assignment, "UID", std::to_string(uid));
  addChildElementWithName(assignment, "TaskUID", taskUID);
  addChildElementWithName(assignment, "ResourceUID", kPlaceholderResourceUID);
  appendProgress(assignment, info);             // Milestone, PercentWorkComplete
  appendWork(assignment, info, info.effort());  // Work, RemainingWork
  if (start) addChildElementWithName(assignment, "Start", *start);
  if (finish) addChildElementWithName(assignment, "Finish", *finish);
  addChildElementWithName(assignment, "Units", "1");
  if (assignmentUID != nullptr) *assignmentUID = uid;
  return element;
}
