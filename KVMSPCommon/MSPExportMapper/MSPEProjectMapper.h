#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduledTaskInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPETreeGuard.h"
#include "Platform/Base/IdHash.h"

class MSPECurrencyFormatMapper;
struct XQueryError;

/// Turns a scenario into the `Project` element: writes the header, then walks the resource tree and the task tree from
/// their top nodes and has the other mappers write each node. One per export, used once.
class MSPEProjectMapper final : public MSPEObjectMapperBase {
 public:
  using ScheduledTasks = std::unordered_map<std::string, MSPEScheduledTaskInfo, platform::IdHash>;
  using UidToId = std::unordered_map<std::string, std::string, platform::IdHash>;

  explicit MSPEProjectMapper(MSPEMapper& mapper);

  /// Writes the whole `Project`, whose children are in the order of the calls in this function's body. The context
  /// refers to it from the start.
  /// @throws InvariantFailure what the mappers below raise.
  [[nodiscard]] std::unique_ptr<xml::Section> newProjectFromKVDXScenario(xml::Node kvdxScenario);

  /// Maps a resource, then the members of a group.
  /// @param parentResource empty for the top resource.
  /// @param groupName written as the resource's `Group`; none at the top.
  /// @param baseCalendarUID passed on to the members, and not used otherwise.
  /// @return true. @throws InvariantFailure also when a group contains itself, or its tree does not end.
  bool addKvdxResource(xml::Node kvdxResource, xml::Node parentResource, xml::Node kvdxScenario,
                       xml::Section& toResources, const std::optional<std::string>& groupName,
                       std::int64_t baseCalendarUID, XQueryError* error = nullptr);

  /// Maps a task and its assignments, then the tasks of a group.
  /// @param parentTask empty for the top task.
  /// @param atLevel written as `OutlineLevel`; 0 for the top task.
  /// @return true. @throws InvariantFailure also for a group that is split, and for a tree that does not end.
  bool addKvdxTask(xml::Node kvdxTask, xml::Node parentTask, xml::Node kvdxScenario, xml::Section& toTasks,
                   std::int64_t atLevel, xml::Section& assignments, XQueryError* error = nullptr);

  /// Maps a task's assignments.
  /// @param timephasedDataArray the task's timephased data, if any; each assignment gets a copy that begins with its
  /// UID.
  /// @return true.
  bool addKvdxAssignments(const std::vector<xml::Node>& kvdxAssignments, xml::Node kvdxTask, xml::Node kvdxScenario,
                          const std::optional<std::vector<xml::Element>>& timephasedDataArray,
                          xml::Section& toAssignments, XQueryError* error = nullptr);

  [[nodiscard]] xml::Node kvdxScenario() const { return kvdxScenario_; }
  /// False when the scenario is scheduled backwards from its end (attribute `fixed-end`).
  [[nodiscard]] bool scheduleFromStart() const { return scheduleFromStart_; }
  /// In kvdx form; the moment of the export when the scenario has none.
  [[nodiscard]] const std::string& kvdxProjectStartDate() const { return kvdxProjectStartDate_; }
  [[nodiscard]] const std::string& kvdxProjectFinishDate() const { return kvdxProjectFinishDate_; }
  /// Lowest and highest priority of all tasks and 0, which both always include (names spelled so on purpose).
  [[nodiscard]] std::int64_t minTaskPriortiy() const { return minTaskPriortiy_; }
  [[nodiscard]] std::int64_t maxTaskPriortiy() const { return maxTaskPriortiy_; }
  /// The record of every source task by its id; none before they were read.
  [[nodiscard]] const std::optional<ScheduledTasks>& scheduledTasks() const { return scheduledTasks_; }
  void setScheduledTasks(std::optional<ScheduledTasks> tasks) { scheduledTasks_ = std::move(tasks); }
  /// The record of a source task. @throws InvariantFailure when there is none of the id.
  [[nodiscard]] const MSPEScheduledTaskInfo& scheduledTask(const std::string& id) const;
  /// MSPDI UID to MSPDI ID of what has been written so far.
  [[nodiscard]] const UidToId& taskUidToIdMap() const { return taskUidToIdMap_; }
  [[nodiscard]] const UidToId& resourceUidToIdMap() const { return resourceUidToIdMap_; }
  /// Records the number of a task or resource; false when its UID was recorded before.
  bool recordTask(const std::string& uid, const std::string& id) { return taskUidToIdMap_.emplace(uid, id).second; }
  bool recordResource(const std::string& uid, const std::string& id) {
    return resourceUidToIdMap_.emplace(uid, id).second;
  }
  /// The text of the resource's `type`; none without one. Read only once for each resource, since every assignment asks
  /// for it.
  [[nodiscard]] const std::optional<std::string>& resourceType(xml::Node kvdxResource);
  /// The task that a split task's `child-task` refers to, or an empty node.
  /// @throws InvariantFailure when the same pieces are asked for too often (MSPETreeGuard).
  [[nodiscard]] xml::Node splitPiece(xml::Node reference);
  [[nodiscard]] std::int64_t unnamedGroupsCount() const { return unnamedGroupsCount_; }

 private:
  void appendHeader(xml::Section& project, const std::optional<std::string>& topResourceId,
                    const std::optional<std::string>& topTaskId);
  void appendDates(xml::Section& project);
  void appendCurrency(xml::Section& project);
  std::size_t readScheduledTasks();
  /// What a group's members inherit.
  struct GroupBequest {
    std::optional<std::string> groupName;
    std::int64_t baseCalendarUID;
  };

  /// Maps a resource without its members, and returns what these inherit; none when it is not a group.
  std::optional<GroupBequest> mapResource(xml::Node kvdxResource, xml::Node parentResource, xml::Section& toResources,
                                          const GroupBequest& inherited, XQueryError* error);
  /// Maps a task and its assignments, without the tasks of a group.
  void mapTask(xml::Node kvdxTask, xml::Node parentTask, bool isGroup, xml::Section& toTasks, std::int64_t atLevel,
               xml::Section& assignments, XQueryError* error);
  [[nodiscard]] std::optional<std::string> groupNameBelow(xml::Node kvdxGroup, bool hasParent,
                                                          const std::optional<std::string>& inheritedName);
  void addDummyAssignment(xml::Node kvdxTask, const std::optional<std::vector<xml::Element>>& timephasedDataArray,
                          xml::Section& toAssignments);

  xml::Node kvdxScenario_;
  bool scheduleFromStart_ = true;
  std::string kvdxProjectStartDate_;
  std::string kvdxProjectFinishDate_;
  std::int64_t minTaskPriortiy_ = 0;
  std::int64_t maxTaskPriortiy_ = 0;
  std::optional<ScheduledTasks> scheduledTasks_;
  bool hasPrerequisites_ = false;
  UidToId taskUidToIdMap_;
  UidToId resourceUidToIdMap_;
  std::int64_t unnamedGroupsCount_ = 0;
  std::optional<MSPETreeGuard> resourceGuard_;
  std::optional<MSPETreeGuard> taskGuard_;
  std::optional<MSPETreeGuard> pieceGuard_;
  std::unordered_map<const void*, std::optional<std::string>> resourceTypes_;
};
