#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduledTaskInfo.h"

/// Writes the `Assignment` elements of one task. The task's effort is shared among its assignments of one resource type
/// in proportion to their units; assignments of different types each carry the share within their own type.
class MSPEAssignmentMapper final : public MSPEObjectMapperBase {
 public:
  /// Sums the units of the task's assignments by resource type. A missing `units` counts as 1, one without a number as
  /// 0.
  /// @throws InvariantFailure when the task has no id, or an assignment's resource or its type cannot be found.
  MSPEAssignmentMapper(MSPEMapper& mapper, xml::Node kvdxTask);

  /// One source `assignment`; sets UID(). An assignment of a material counts each unit as an hour of work and carries
  /// its consumption by day.
  /// @throws InvariantFailure when its resource or its task's record cannot be found.
  [[nodiscard]] xml::Element newAssignmentFromKVDXAssignment(xml::Node kvdxAssignment);

  /// The assignment of a task that has none, to the placeholder resource -65535. Its `Units` stands last.
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
