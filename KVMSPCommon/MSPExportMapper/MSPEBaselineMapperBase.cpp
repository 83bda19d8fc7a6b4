#include "KVMSPCommon/MSPExportMapper/MSPEBaselineMapperBase.h"

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"

MSPEBaselineMapperBase::MSPEBaselineMapperBase(std::int64_t baselineNumber, MSPEMapper& mapper)
    : MSPEObjectMapperBase(mapper), baselineNumber_(baselineNumber), kvdxBaselines_(mapper.kvdxBaselines()) {
  const auto count = static_cast<std::int64_t>(kvdxBaselines_.size());
  platform::require(baselineNumber >= 0 && baselineNumber < count,
                    "Incorrect argument baselineNumber={}. Must be from 0 to {}.", baselineNumber, count - 1);
}

const MSPEBaseline& MSPEBaselineMapperBase::baseline() const {
  return kvdxBaselines_[static_cast<std::size_t>(baselineNumber_)];
}

xml::Element MSPEBaselineMapperBase::newNumberedBaseline() const {
  xml::Element element = elementWithName("Baseline", mapper());
  addChildElementWithName(element, "Number", std::to_string(baselineNumber_));
  return element;
}

std::optional<xml::Element> MSPETaskBaselineMapper::newBaselineFromKvdxTask(xml::Node kvdxTask) const {
  const auto id = kvdxTask.attributeText("id");
  const xml::Node task = id ? baseline().getTaskById(*id) : xml::Node();
  if (!task) return std::nullopt;

  xml::Element element = newNumberedBaseline();
  if (const auto start = stringValueForXQuery(task, "start-date")) {
    addChildElementWithName(element, "Start", MSPIUtilities::kvdxToMspdiDateTime(*start));
    const auto end = stringValueForXQuery(task, "end-date");
    addChildElementWithName(element, "Finish", MSPIUtilities::kvdxToMspdiDateTime(end.value_or("")));
  }
  if (const auto duration = stringValueForXQuery(task, "duration")) {
    addChildElementWithName(element, "Duration", MSPIUtilities::kvdxToMspdiDuration(*duration));
  }
  if (const auto effort = stringValueForXQuery(task, "effort")) {
    addChildElementWithName(element, "Work", MSPIUtilities::kvdxToMspdiDuration(*effort));
  }
  XQueryError error;
  const double cost = floatValueForXQuery(task, "static-cost", &error);
  if (!error) addChildElementWithName(element, "FixedCost", platform::fixedPoint(cost * 100, 2));
  return element;
}

std::optional<xml::Element> MSPEResourceBaselineMapper::newBaselineFromKvdxResource(xml::Node kvdxResource) const {
  const auto id = kvdxResource.attributeText("id");
  if (!id || !baseline().getResourceById(*id)) return std::nullopt;
  return newNumberedBaseline();
}

std::optional<xml::Element> MSPEAssignmentBaselineMapper::newBaselineFromKvdxAssignment(
    xml::Node kvdxAssignment) const {
  const auto resourceId = kvdxAssignment.attributeText("@idref");
  if (!resourceId) return std::nullopt;
  const auto taskId = kvdxAssignment.parent().attributeText("id");
  if (!taskId || !baseline().getAssignmentByTaskId(*taskId, *resourceId)) return std::nullopt;
  return newNumberedBaseline();
}
