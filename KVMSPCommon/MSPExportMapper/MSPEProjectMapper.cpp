#include "KVMSPCommon/MSPExportMapper/MSPEProjectMapper.h"

#include <fmt/format.h>

#include <algorithm>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEAssignmentMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"
#include "KVMSPCommon/MSPExportMapper/MSPETaskMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPETimephasedDataMapper.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/Log.h"
#include "Platform/Time/Clock.h"

using platform::Budget;
using platform::log;
using platform::orEmpty;
using platform::require;

namespace {

constexpr std::string_view kMSPDINamespace = "http://schemas.microsoft.com/project";
constexpr std::int64_t kNoCalendarUID = -1;

/// The scenario's last `resource` or `task` with the id; empty when there is none.
xml::Node objectWithId(xml::Node scenario, std::string_view kind, const std::optional<std::string>& id) {
  if (!id) return {};
  return singleObjectForXQuery(scenario, xml::Query::child(kind, "id", *id));
}

/// Gives the assignment a copy of the task's timephased data, if any.
void appendTimephasedData(xml::OutputNode assignment, std::int64_t assignmentUID,
                          const std::optional<std::vector<xml::Element>>& timephasedDataArray) {
  if (!timephasedDataArray) return;
  std::vector<xml::Element> copies;
  copies.reserve(timephasedDataArray->size());
  for (const xml::Element& data : *timephasedDataArray) copies.push_back(data.node().copy());
  MSPETimephasedDataMapper::appendToAssignment(assignment, assignmentUID, std::move(copies));
}

/// A node of a tree, and the group that refers to it; empty for the top.
struct Place {
  xml::Node node;
  xml::Node parent;
};

/// Goes down the tree below a node in the order of the references, without recursion: how deep a plan is nested must
/// not take stack. map(node, parent, inherited) maps one node and gives what its members inherit; none for one that has
/// none. References to what is not there are skipped.
template <typename Inherited, typename Map>
void walkTree(xml::Node scenario, std::string_view kind, const xml::Query& members, MSPETreeGuard& guard, Place top,
              const Inherited& inherited, Map map) {
  struct Group {
    xml::Node node;
    Inherited bequest;
    std::vector<xml::Node> references;
    std::size_t next = 0;
  };
  std::vector<Group> path;
  const auto visit = [&](const Place& place, const Inherited& ofParent) {
    auto bequest = map(place.node, place.parent, ofParent);
    if (!bequest) return;
    guard.enter(place.node);
    path.push_back({place.node, std::move(*bequest), objectsForXQuery(place.node, members)});
  };
  visit(top, inherited);
  while (!path.empty()) {
    Group& group = path.back();
    if (group.next == group.references.size()) {
      guard.leave(group.node);
      path.pop_back();
      continue;
    }
    const auto id = group.references[group.next++].attributeText("idref");
    if (const xml::Node member = objectWithId(scenario, kind, id)) visit({member, group.node}, group.bequest);
  }
}

}  // namespace

MSPEProjectMapper::MSPEProjectMapper(MSPEMapper& mapper) : MSPEObjectMapperBase(mapper) {}

std::unique_ptr<xml::Section> MSPEProjectMapper::newProjectFromKVDXScenario(xml::Node kvdxScenario) {
  auto element = std::make_unique<xml::Section>("Project", 0);
  xml::Section& project = *element;
  project.setAttribute("xmlns", kMSPDINamespace);
  mapper().setMspdiProject(&project);
  kvdxScenario_ = kvdxScenario;
  const auto topResourceId = singleObjectForXQuery(kvdxScenario, "top-resource").attributeText("idref");
  const auto topTaskId = singleObjectForXQuery(kvdxScenario, "top-task").attributeText("idref");
  XQueryError error;

  appendHeader(project, topResourceId, topTaskId);  // SaveVersion to CurrencySymbolPosition
  const std::size_t taskCount = readScheduledTasks();
  if (hasPrerequisites_) addChildElementWithName(project, "HonorConstraints", "1");
  addChildElementWithName(project, "NewTasksAreManual", "0");
  addChildElementWithName(project, "CalendarUID", "1");
  addChildElementWithName(project, "WeekStartDay", "0");
  addChildElementWithName(project, "ProjectExternallyEdited", "0");
  MSPECalendarMapper& calendarMapper = mapper().calendarMapper();
  project.append(calendarMapper.takeCalendars());
  xml::Section& tasks = project.appendSection("Tasks");
  xml::Section& resources = project.appendSection("Resources");
  xml::Section& assignments = project.appendSection("Assignments");

  resources.append(MSPEResourceMapper::newDummyResourceWithMapper(mapper()));
  const std::size_t resourceCount = objectsForXQuery(kvdxScenario, "resource").size();
  log("Mapping {} Resources and Schedules ...", resourceCount);
  calendarMapper.setTopScheduleKey(topResourceId);
  resourceGuard_.emplace("Resource", kvdxScenario);
  addKvdxResource(objectWithId(kvdxScenario, "resource", topResourceId), {}, kvdxScenario, resources, std::nullopt,
                  kNoCalendarUID, &error);
  calendarMapper.buildCalendarHierarchy();

  log("Mapping {} Tasks ...", taskCount);
  mapper().beginTasks(project, tasks);
  taskGuard_.emplace("Task", kvdxScenario);
  pieceGuard_.emplace("Task", kvdxScenario);
  addKvdxTask(objectWithId(kvdxScenario, "task", topTaskId), {}, kvdxScenario, tasks, 0, assignments, &error);
  return element;
}

void MSPEProjectMapper::appendHeader(xml::Section& project, const std::optional<std::string>& topResourceId,
                                     const std::optional<std::string>& topTaskId) {
  XQueryError error;
  scheduleFromStart_ = !boolAttributeForName(kvdxScenario_, "fixed-end", &error) || error;
  if (mapper().fiterType() == 1) addChildElementWithName(project, "SaveVersion", "14");
  if (const auto title = stringValueForXQuery(mapper().kvdxTOCXmlDoc()->root(), "project/title")) {
    addChildElementWithName(project, "Title", *title);
  }
  addChildElementWithName(project, "ScheduleFromStart", mspdiFlag(scheduleFromStart_));
  mapper().setIdMapper(MSPEIdMapper(topResourceId, topTaskId));
  appendDates(project);
  appendCurrency(project);
}

void MSPEProjectMapper::appendDates(xml::Section& project) {
  const auto now = MSPIUtilities::mppToKvdxDateTime(platform::Clock::now());
  // The side that the plan is scheduled from is always written, from now when the scenario does not give it.
  const auto append = [&](const xml::Query& query, std::string_view name, bool isNeeded, std::string& kvdxDate) {
    const auto given = stringValueForXQuery(kvdxScenario_, query);
    kvdxDate = given ? *given : orEmpty(now);
    if (given || isNeeded) addChildElementWithName(project, name, MSPIUtilities::kvdxToMspdiDateTime(kvdxDate));
  };
  append("start-date", "StartDate", scheduleFromStart_, kvdxProjectStartDate_);
  append("end-date", "FinishDate", !scheduleFromStart_, kvdxProjectFinishDate_);
}

void MSPEProjectMapper::appendCurrency(xml::Section& project) {
  const MSPECurrencyFormatMapper currency(mapper());
  addChildElementWithName(project, "CurrencyDigits", std::to_string(currency.currencyDigits()));
  addChildElementWithName(project, "CurrencySymbol", currency.currencySymbol());
  addChildElementWithName(project, "CurrencyCode", currency.currencyCode());
  addChildElementWithName(project, "CurrencySymbolPosition", std::to_string(currency.currencySymbolPosition()));
}

/// Makes the record of each task, finds the bounds of their priorities and whether there are links; gives the number of
/// tasks.
std::size_t MSPEProjectMapper::readScheduledTasks() {
  const auto tasks = objectsForXQuery(kvdxScenario_, "task");
  scheduledTasks_.emplace().reserve(tasks.size());
  taskUidToIdMap_.reserve(tasks.size());
  for (const xml::Node task : tasks) {
    MSPEScheduledTaskInfo info(task, kvdxScenario_);
    hasPrerequisites_ = hasPrerequisites_ || !info.prerequisites().empty();
    const std::string uid = info.uid();
    scheduledTasks_->insert_or_assign(uid, std::move(info));
  }
  for (const auto& [uid, info] : *scheduledTasks_) {
    minTaskPriortiy_ = std::min(minTaskPriortiy_, info.priority());
    maxTaskPriortiy_ = std::max(maxTaskPriortiy_, info.priority());
  }
  require(minTaskPriortiy_ <= maxTaskPriortiy_, "Incorrect values of _minTaskPriortiy ({}) and _maxTaskPriortiy ({})",
          minTaskPriortiy_, maxTaskPriortiy_);
  return tasks.size();
}

const MSPEScheduledTaskInfo& MSPEProjectMapper::scheduledTask(const std::string& id) const {
  require(scheduledTasks_.has_value(), "Can not get scheduled tasks from project mapper.");
  const auto found = scheduledTasks_->find(id);
  require(found != scheduledTasks_->end(), "Can not get scheduled task with id='{}' from the list of scheduled tasks.",
          id);
  return found->second;
}

bool MSPEProjectMapper::addKvdxResource(xml::Node kvdxResource, xml::Node parentResource, xml::Node kvdxScenario,
                                        xml::Section& toResources, const std::optional<std::string>& groupName,
                                        std::int64_t baseCalendarUID, XQueryError* error) {
  const auto map = [&](xml::Node resource, xml::Node parent, const GroupBequest& inherited) {
    resourceGuard_->reach(resource);
    return mapResource(resource, parent, toResources, inherited, error);
  };
  walkTree(kvdxScenario, "resource", "child-resource", *resourceGuard_, {kvdxResource, parentResource},
           GroupBequest{groupName, baseCalendarUID}, map);
  return true;
}

std::optional<MSPEProjectMapper::GroupBequest> MSPEProjectMapper::mapResource(xml::Node kvdxResource,
                                                                              xml::Node parentResource,
                                                                              xml::Section& toResources,
                                                                              const GroupBequest& inherited,
                                                                              XQueryError* error) {
  MSPEResourceMapper resourceMapper(mapper());
  auto resource = resourceMapper.newResourceFromKVDXResource(kvdxResource, parentResource);
  std::int64_t baseCalendarUID = inherited.baseCalendarUID;
  if (resourceMapper.resourceCalendar()) {
    require(resourceMapper.resourceCalendarUID() >= 1, "Expected Calendar UID > 0.");
    baseCalendarUID = resourceMapper.resourceCalendarUID();
  }
  if (resource) {
    if (inherited.groupName) addChildElementWithName(*resource, "Group", *inherited.groupName);
    toResources.append(std::move(*resource));
  }
  if (stringValueForXQuery(kvdxResource, "type", error) != kGroupResource) return std::nullopt;
  return GroupBequest{groupNameBelow(kvdxResource, static_cast<bool>(parentResource), inherited.groupName),
                      baseCalendarUID};
}

const std::optional<std::string>& MSPEProjectMapper::resourceType(xml::Node kvdxResource) {
  const auto [type, isNew] = resourceTypes_.try_emplace(kvdxResource.identity());
  if (isNew) type->second = stringValueForXQuery(kvdxResource, "type");
  return type->second;
}

xml::Node MSPEProjectMapper::splitPiece(xml::Node reference) {
  const xml::Node piece = objectWithId(kvdxScenario_, "task", reference.attributeText("idref"));
  if (piece) pieceGuard_->reach(piece);
  return piece;
}

/// The name that a group's members carry: its path of names. An unnamed group is numbered and begins a new path; the
/// unnamed top group has none.
std::optional<std::string> MSPEProjectMapper::groupNameBelow(xml::Node kvdxGroup, bool hasParent,
                                                             const std::optional<std::string>& inheritedName) {
  auto name = stringValueForXQuery(kvdxGroup, "name");
  if (!name) {
    if (!hasParent) return std::nullopt;
    return fmt::format("Anonymous_Group_{}", ++unnamedGroupsCount_);
  }
  if (inheritedName) name = fmt::format("{}/{}", *inheritedName, *name);
  Budget::spend(name->size());
  return name;
}

bool MSPEProjectMapper::addKvdxTask(xml::Node kvdxTask, xml::Node parentTask, xml::Node kvdxScenario,
                                    xml::Section& toTasks, std::int64_t atLevel, xml::Section& assignments,
                                    XQueryError* error) {
  const auto map = [&](xml::Node task, xml::Node parent, std::int64_t level) -> std::optional<std::int64_t> {
    const bool isGroup = stringValueForXQuery(task, "type", error) == "group";
    mapTask(task, parent, isGroup, toTasks, level, assignments, error);
    if (!isGroup) return std::nullopt;
    taskGuard_->reach(task);  // behind the mapping: a task that is reached twice is told by its UID first
    return level + 1;
  };
  walkTree(kvdxScenario, "task", "child-task", *taskGuard_, {kvdxTask, parentTask}, atLevel, map);
  return true;
}

void MSPEProjectMapper::mapTask(xml::Node kvdxTask, xml::Node parentTask, bool isGroup, xml::Section& toTasks,
                                std::int64_t atLevel, xml::Section& assignments, XQueryError* error) {
  const bool isSplit = static_cast<bool>(singleObjectForXQuery(kvdxTask, "split", error));
  require(!isSplit || !isGroup, "Task group and split task are mutualy exclusive.");  // spelled so on purpose
  xml::Element task = MSPETaskMapper(mapper()).newTaskFromKVDXTask(kvdxTask, parentTask);
  std::optional<std::vector<xml::Element>> timephasedData;
  if (isSplit) timephasedData = MSPETimephasedDataMapper(mapper()).newTimephasedDataFromKvdxSplitTask(kvdxTask);
  addChildElementWithName(task, "OutlineLevel", std::to_string(atLevel));
  toTasks.append(std::move(task));
  if (const auto kvdxAssignments = objectsForXQuery(kvdxTask, "assignment"); !kvdxAssignments.empty()) {
    addKvdxAssignments(kvdxAssignments, kvdxTask, kvdxScenario_, timephasedData, assignments, error);
  } else if (!isGroup) {
    addDummyAssignment(kvdxTask, timephasedData, assignments);
  }
}

void MSPEProjectMapper::addDummyAssignment(xml::Node kvdxTask,
                                           const std::optional<std::vector<xml::Element>>& timephasedDataArray,
                                           xml::Section& toAssignments) {
  const auto id = kvdxTask.attributeText("id");
  if (!id) return;
  require(scheduledTasks_ && scheduledTasks_->contains(*id),
          "Can not find task with UID={} in the list of scheduled tasks.", *id);
  std::int64_t uid = -1;
  xml::Element assignment = MSPEAssignmentMapper::newDummyAssignmentForTaskId(*id, &uid, mapper());
  require(uid >= 1, "Incorrect UID for dummy assignment ({}).", uid);
  appendTimephasedData(assignment, uid, timephasedDataArray);
  toAssignments.append(std::move(assignment));
}

bool MSPEProjectMapper::addKvdxAssignments(const std::vector<xml::Node>& kvdxAssignments, xml::Node kvdxTask,
                                           xml::Node /*kvdxScenario*/,
                                           const std::optional<std::vector<xml::Element>>& timephasedDataArray,
                                           xml::Section& toAssignments, XQueryError* /*error*/) {
  MSPEAssignmentMapper assignmentMapper(mapper(), kvdxTask);
  for (const xml::Node kvdxAssignment : kvdxAssignments) {
    const auto scope = mapper().elementScope();
    xml::Element assignment = assignmentMapper.newAssignmentFromKVDXAssignment(kvdxAssignment);
    appendTimephasedData(assignment, assignmentMapper.UID(), timephasedDataArray);
    toAssignments.append(std::move(assignment));
  }
  return true;
}
