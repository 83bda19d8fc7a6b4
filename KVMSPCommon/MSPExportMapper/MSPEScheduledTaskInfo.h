#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// The parsed record of one source task: its schedule, kind, constraints and dependencies. Dates are instants,
/// durations and efforts seconds of working time.
class MSPEScheduledTaskInfo {
 public:
  enum TaskType : std::int32_t { kTask = 0, kMilestone = 1, kGroup = 2, kHammock = 3 };
  enum ScheduleType : std::int32_t { kProjectDirection = 0, kAsSoonAsPossible = 1, kAsLateAsPossible = 2 };
  enum Recalculate : std::int32_t { kDuration = 0, kEffort = 1, kUnits = 2 };
  enum PrerequisiteKind : std::int32_t {
    kFinishToStart = 0,
    kStartToFinish = 1,
    kStartToStart = 2,
    kFinishToFinish = 3
  };

  /// One dependency on a predecessor, from a `prerequisite-task` element.
  struct Prerequisite {
    std::optional<std::string> predecessorId;  ///< `idref`
    std::optional<std::string> external;       ///< `external`
    std::int32_t kind = kFinishToStart;        ///< `kind`; FS when missing or unknown
    bool isResourceDependency = false;         ///< `is-resource-dependency`
    double leadTime = 0;                       ///< `lead-time`: seconds, or a fraction when the next is set
    bool isPercentage = false;                 ///< `lead-time`'s `is-percentage`, for exactly "true"
  };

  /// Reads the task.
  /// @param kvdxScenario ignored.
  /// @throws InvariantFailure when start-date, end-date, duration or the attribute id is missing; when start-date,
  /// end-date or duration occurs twice; and when a number's text is not a number.
  MSPEScheduledTaskInfo(xml::Node kvdxTask, xml::Node kvdxScenario);

  [[nodiscard]] const std::string& uid() const { return uid_; }
  [[nodiscard]] std::optional<platform::Instant> startDate() const { return startDate_; }
  void setStartDate(std::optional<platform::Instant> date) { startDate_ = date; }
  [[nodiscard]] std::optional<platform::Instant> endDate() const { return endDate_; }
  void setEndDate(std::optional<platform::Instant> date) { endDate_ = date; }
  [[nodiscard]] std::optional<platform::Instant> leveledStart() const { return leveledStart_; }
  [[nodiscard]] double duration() const { return duration_; }
  /// A whole number of seconds; a fraction in the source is dropped.
  [[nodiscard]] double effort() const { return effort_; }
  [[nodiscard]] double effortDone() const { return effortDone_; }
  [[nodiscard]] std::int64_t priority() const { return priority_; }
  /// A fraction from 0 to 1, as the source has it.
  [[nodiscard]] double completionPercentage() const { return completionPercentage_; }
  [[nodiscard]] std::int32_t taskType() const { return taskType_; }
  [[nodiscard]] std::int32_t scheduleType() const { return scheduleType_; }
  [[nodiscard]] std::int32_t recalculate() const { return recalculate_; }
  [[nodiscard]] std::optional<platform::Instant> lockedStartDate() const { return lockedStartDate_; }
  [[nodiscard]] std::optional<platform::Instant> lockedEndDate() const { return lockedEndDate_; }
  /// From start-constraint-date, otherwise end-constraint-date. noLaterThanConstraintDate() is always the same date.
  [[nodiscard]] std::optional<platform::Instant> noEarlierThanConstraintDate() const { return noEarlierThan_; }
  /// 1 when the date constrains the task's end, 0 when its start.
  [[nodiscard]] std::int32_t noEarlierThanConstrainedTaskEnd() const { return noEarlierThanConstrainedTaskEnd_; }
  void setNoEarlierThanConstrainedTaskEnd(std::int32_t flag) { noEarlierThanConstrainedTaskEnd_ = flag; }
  [[nodiscard]] std::optional<platform::Instant> noLaterThanConstraintDate() const { return noLaterThan_; }
  [[nodiscard]] std::int32_t noLaterThanConstrainedTaskEnd() const { return noLaterThanConstrainedTaskEnd_; }
  void setNoLaterThanConstrainedTaskEnd(std::int32_t flag) { noLaterThanConstrainedTaskEnd_ = flag; }
  /// In document order.
  [[nodiscard]] const std::vector<Prerequisite>& prerequisites() const { return prerequisites_; }
  /// References of a group's `child-task` elements; empty for other tasks.
  [[nodiscard]] const std::vector<std::string>& childTaskUIDs() const { return childTaskUIDs_; }

  /// The fraction of the task that is done, from 0 to 1: effort done divided by effort when both are positive (3600 of
  /// 14400 seconds: 0.25), otherwise the source's completion.
  /// @throws InvariantFailure when it is not from 0 to 1.
  [[nodiscard]] double percentageComplete() const;
  /// The same in percent, without the fraction: 0.999 gives 99.
  [[nodiscard]] std::int32_t percentComplete() const;

  [[nodiscard]] std::string description() const;

 private:
  void readConstraints(xml::Node kvdxTask);
  void readPrerequisites(xml::Node kvdxTask);

  std::string uid_;
  std::optional<platform::Instant> startDate_;
  std::optional<platform::Instant> endDate_;
  std::optional<platform::Instant> leveledStart_;
  double duration_ = 0;
  double effort_ = 0;
  double effortDone_ = 0;
  std::int64_t priority_ = 0;
  double completionPercentage_ = 0;
  std::int32_t taskType_ = kTask;
  std::int32_t scheduleType_ = kProjectDirection;
  std::int32_t recalculate_ = kDuration;
  std::optional<platform::Instant> lockedStartDate_;
  std::optional<platform::Instant> lockedEndDate_;
  std::optional<platform::Instant> noEarlierThan_;
  std::int32_t noEarlierThanConstrainedTaskEnd_ = 0;
  std::optional<platform::Instant> noLaterThan_;
  std::int32_t noLaterThanConstrainedTaskEnd_ = 0;
  std::vector<Prerequisite> prerequisites_;
  std::vector<std::string> childTaskUIDs_;
};
