#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduledTaskInfo.h"

/// Writes the `Assignment` elements of one task. The assignments of each resource type share the task's whole effort
/// among them in proportion to their units. With an effort of 8 hours:
///
///   Staff, 1 unit        2 hours
///   Staff, 3 units       6 hours
///   Equipment, 1 unit    8 hours, since it is the only assignment of its type
class MSPEAssignmentMapper final : public MSPEObjectMapperBase {
 public:
  /// Sums the units of the task's assignments by resource type. A missing `units` counts as 1, one that is not a number
  /// as 0.
  /// @throws InvariantFailure when the task has no id, or an assignment's resource or its type cannot be found.
  MSPEAssignmentMapper(MSPEMapper& mapper, xml::Node kvdxTask);

  /// Writes one source `assignment`, and sets UID(). For a material, each unit counts as an hour of work, and the
  /// consumption is also written day by day.
  /// @throws InvariantFailure when its resource or its task's record cannot be found.
  [[nodiscard]] xml::Element newAssignmentFromKVDXAssignment(xml::Node kvdxAssignment);

  /// For a task without assignments: an assignment to the placeholder resource -65535. Its `Units` is the last child.
  /// @param assignmentUID receives the new UID when given.
  [[nodiscard]] static xml::Element newDummyAssignmentForTaskId(const std::string& taskId, std::int64_t* assignmentUID,
                                                                MSPEMapper& mapper);

  /// UID of the assignment made last.
  [[nodiscard]] std::int64_t UID() const { return UID_; }
  void setUID(std::int64_t uid) { UID_ = uid; }

 private:
  [[nodiscard]] xml::Node assignedResource(const std::string& resourceId) const;
  [[nodiscard]] double workOfAssignment(const std::optional<std::string>& resourceType, double units,
                                        double effort) const;

  const MSPEScheduledTaskInfo* taskInfo_ = nullptr;
  std::string taskUID_;
  std::array<double, kResourceTypes.size()> unitsOfType_{};
  std::int64_t UID_ = 0;
};
