#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduledTaskInfo.h"

/// Writes one source task as a `Task` element. Scheduled values come from the task's record, the rest from the source
/// element. Made for one task, dropped after use.
class MSPETaskMapper final : public MSPEObjectMapperBase {
 public:
  using MSPEObjectMapperBase::MSPEObjectMapperBase;

  /// The children are in the order of the calls in this function's body; the project mapper appends OutlineLevel.
  /// @param parentTask empty for the top task; only affects the log.
  /// @throws InvariantFailure for a task without id, with the UID of another one, or that differs from its record.
  [[nodiscard]] xml::Element newTaskFromKVDXTask(xml::Node kvdxTask, xml::Node parentTask);

  /// Never filled.
  [[nodiscard]] const std::string& mspdiStart() const { return mspdiStart_; }
  [[nodiscard]] const std::string& mspdiFinish() const { return mspdiFinish_; }

 private:
  void appendIdentity(xml::OutputNode task, const std::string& id);
  void appendSchedule(xml::OutputNode task, xml::Node kvdxTask);
  void appendCompletion(xml::OutputNode task) const;
  void appendConstraint(xml::OutputNode task, const std::optional<std::string>& start) const;
  void appendDateConstraint(xml::OutputNode task, const char* type, std::optional<platform::Instant> date) const;
  void appendPredecessorLinks(xml::OutputNode task) const;
  void appendBaselines(xml::OutputNode task, xml::Node kvdxTask) const;

  [[nodiscard]] bool isForwardScheduled() const;
  [[nodiscard]] std::int64_t mspdiPriority() const;

  const MSPEScheduledTaskInfo* taskInfo_ = nullptr;
  [[maybe_unused]] std::int32_t assignmentId_ = 0;  ///< read by nothing
  std::string mspdiStart_;
  std::string mspdiFinish_;
};
