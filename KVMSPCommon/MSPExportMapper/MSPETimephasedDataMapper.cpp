#include "KVMSPCommon/MSPExportMapper/MSPETimephasedDataMapper.h"

#include <algorithm>
#include <string>
#include <utility>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "KVMSPCommon/MSPExportMapper/MSPETimephasedDataInfo.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"

namespace {

constexpr double kNoValue = -1;

}  // namespace

std::optional<std::vector<xml::Element>> MSPETimephasedDataMapper::newTimephasedDataFromKvdxSplitTask(
    xml::Node kvdxTask) {
  if (!singleObjectForXQuery(kvdxTask, "split")) return std::nullopt;
  const auto pieces = objectsForXQuery(kvdxTask, "child-task");
  splitCount_ = static_cast<std::int64_t>(pieces.size());

  std::vector<xml::Element> data;
  std::optional<std::string> previousEnd;
  for (const xml::Node reference : pieces) {
    const xml::Node piece = mapper().projectMapper()->splitPiece(reference);
    if (!piece) continue;
    const std::string start = stringValueForXQuery(piece, "start-date").value_or("");
    const std::string end = stringValueForXQuery(piece, "end-date").value_or("");
    const double effort = floatValueForXQuery(piece, "effort");
    if (previousEnd) {
      MSPETimephasedDataInfo(*previousEnd, start, kNoValue, mapper()).addTimephasedDataToArray(data, nullptr);
    }
    MSPETimephasedDataInfo(start, end, effort, mapper()).addTimephasedDataToArray(data, nullptr);
    previousEnd = end;
  }
  return data;
}

std::optional<std::vector<xml::Element>> MSPETimephasedDataMapper::newTimephasedDataFromAssignment(
    xml::Node /*kvdxAssignment*/, xml::Node resource, std::string_view start, std::string_view finish,
    double consumption) const {
  if (mapper().projectMapper()->resourceType(resource) != kMaterialResource) return std::nullopt;
  std::vector<xml::Element> data;
  std::vector<bool> workingDays;
  MSPETimephasedDataInfo(start, finish, kNoValue, mapper()).addTimephasedDataToArray(data, &workingDays);
  platform::require(data.size() == workingDays.size(),
                    "TimephasedData array and WorkingDays array have different size.");
  if (data.empty()) return std::nullopt;

  const auto count = std::count(workingDays.begin(), workingDays.end(), true);
  const std::string value =
      MSPIUtilities::mppToMspdiDuration(count == 0 ? 0 : consumption / static_cast<double>(count));
  for (std::size_t i = 0; i < data.size(); ++i) {
    addChildElementWithName(data[i], "Value", workingDays[i] ? value : std::string());
  }
  return data;
}

void MSPETimephasedDataMapper::appendToAssignment(xml::OutputNode assignment, std::int64_t assignmentUID,
                                                  std::vector<xml::Element> data) {
  for (xml::Element& day : data) {
    insertChildElementWithName(day, "UID", std::to_string(assignmentUID), 0);
    assignment.append(std::move(day));
  }
}
