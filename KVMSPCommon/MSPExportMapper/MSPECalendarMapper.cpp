#include "KVMSPCommon/MSPExportMapper/MSPECalendarMapper.h"

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/Log.h"
#include "Platform/Text/Texts.h"

using platform::Budget;
using platform::log;
using platform::orEmpty;
using platform::orNull;
using platform::require;

MSPECalendarMapper::MSPECalendarMapper(MSPEMapper& mapper)
    : MSPEObjectMapperBase(mapper),
      detachedCalendars_(std::make_unique<xml::Section>("Calendars", 1)),
      calendars_(*detachedCalendars_) {}

std::int64_t MSPECalendarMapper::mapCalendarForResource(xml::Node kvdxResource, xml::Node parentResource) {
  std::int64_t calendarUID = 0;
  calendar_ = newCalendarFromKvdxResource(kvdxResource, parentResource, calendarUID);
  require(calendarUID >= 1, "Incorrect value of new Calendar UID ({}).", calendarUID);
  return calendarUID;
}

// Reading.

xml::OutputNode MSPECalendarMapper::newCalendarFromKvdxResource(xml::Node kvdxResource, xml::Node parentResource,
                                                                std::int64_t& calendarUID) {
  const auto name = stringValueForXQuery(kvdxResource, "name");
  calendarUID = MSPEMapper::nextCalendarUID();
  if (parentResource) {
    log("  Mapping Schedule for Resource '{}' ...", orEmpty(name));
  } else {
    log("  Mapping Project Schedule ...");
  }
  require(calendarUID >= 1, "Incorrect Calendar UID ({}). Should be greater than zero.", calendarUID);
  require(parentResource || calendarUID == 1, "Top resource calendar UID mast be equal to 1.");  // spelled so

  std::optional<std::string> parentKey;
  std::string calendarName = "Standard";
  if (parentResource) {
    calendarName = orEmpty(name);
    parentKey = idOf(parentResource);
    require(parentKey.has_value(), "Top resource, and only top resource, has no parent resource.");
  }
  const auto info = std::make_shared<MSPEScheduleInfo>(kvdxResource, parentKey, calendarUID, calendarName);
  const std::string key = kvdxResource.attributeText("id").value_or("");
  Budget::spend(sizeof(MSPEScheduleInfo) + 2 * key.size() + orEmpty(parentKey).size() + calendarName.size());
  scheduleInfoKeys_.push_back(key);
  scheduleInfoMap_[key] = info;

  if (const xml::Node schedule = singleObjectForXQuery(kvdxResource, "schedule")) {
    readSchedule(schedule, !parentResource, *info);
  } else if (calendarUID != 1) {
    require(parentKey.has_value(), "No parent resource specified.");
    require(scheduleInfoForKey(*parentKey) != nullptr, "Can not find parent resource schedule in the map.");
  }
  return info->calendar();
}

/// A group's id. Read only once for each group, since each member asks for it.
const std::optional<std::string>& MSPECalendarMapper::idOf(xml::Node group) {
  const auto [id, isNew] = groupIds_.try_emplace(group.identity());
  if (isNew) id->second = group.attributeText("id");
  return id->second;
}

void MSPECalendarMapper::readSchedule(xml::Node schedule, bool isTop, MSPEScheduleInfo& info) {
  info.setExtendedFormat(!objectsForXQuery(schedule, "flattened-schedule-day").empty());
  if (isTop) info.setProjetDefaults();
  readWeekDays(schedule, info);

  const auto datedDays =
      info.extendedFormat() ? objectsForXQuery(schedule, "flattened-schedule-day[@date]") : std::vector<xml::Node>();
  if (datedDays.empty()) {
    readExceptionCalendars(schedule, info);
  } else {
    readDatedDays(datedDays, info);
  }
}

void MSPECalendarMapper::readWeekDays(xml::Node schedule, MSPEScheduleInfo& info) {
  const xml::Query query = info.extendedFormat() ? xml::Query("flattened-schedule-day[@day-of-week]") : "schedule-day";
  for (const xml::Node day : objectsForXQuery(schedule, query)) {
    const auto name = day.attributeText("day-of-week");
    const auto dayType = weekdayOfName(orEmpty(name));
    require(dayType.has_value(), "Unexpected day of week: {}", orNull(name));
    auto& workingTimes = info.resetWorkingTimesForDayType(*dayType);
    require(workingTimes.empty(), "Incorrectly initialized non-working '{}' in schedule info.", orNull(name));
    for (const xml::Node span : objectsForXQuery(day, "time-span")) {
      workingTimes.emplace_back(static_cast<double>(platform::integerValue(span.attribute("start-time").value())),
                                static_cast<double>(platform::integerValue(span.attribute("end-time").value())));
    }
  }
}

void MSPECalendarMapper::readDatedDays(const std::vector<xml::Node>& days, MSPEScheduleInfo& info) {
  std::vector<xml::Node> overtime;
  std::vector<xml::Node> timeOff;
  for (const xml::Node day : days) {
    (objectsForXQuery(day, "time-span").empty() ? timeOff : overtime).push_back(day);
  }
  const auto file = [](const std::vector<xml::Node>& dated, bool isOvertime, Exceptions& sets) {
    if (dated.empty()) return;
    auto set = std::make_shared<MSPECalendarExceptions>(
        MSPECalendarExceptions::initWithKvdxFlattenedExceptions(dated, isOvertime));
    sets.push_back(set);
    set->mapEvents();
  };
  file(overtime, true, info.overtimeExceptions());
  file(timeOff, false, info.timeOffExceptions());
}

void MSPECalendarMapper::readExceptionCalendars(xml::Node schedule, MSPEScheduleInfo& info) {
  for (const xml::Node calendar : objectsForXQuery(schedule, "calendar")) {
    auto set = std::make_shared<MSPECalendarExceptions>(MSPECalendarExceptions::initWithKvdxCalendar(calendar));
    if (set->overtime()) {
      info.overtimeExceptions().push_back(set);
    } else {
      log("WARNING: Mapping time-off hours to full non-working day exception in MS Project calendar '{}'.",
          info.calendarName());
      info.timeOffExceptions().push_back(set);
    }
    set->mapEvents();
  }
}

// Hierarchy.

MSPECalendarMapper::ScheduleInfo MSPECalendarMapper::scheduleInfoForKey(const std::string& key) const {
  const auto found = scheduleInfoMap_.find(key);
  return found == scheduleInfoMap_.end() ? nullptr : found->second;
}

void MSPECalendarMapper::buildCalendarHierarchy() {
  const ScheduleInfo top = topScheduleKey_ ? scheduleInfoForKey(*topScheduleKey_) : nullptr;
  require(top != nullptr, "Can not find schedule info fo rtop resource.");  // spelled so on purpose
  require(top->calendarUID() == 1, "Incorrect project calendar UID for top schedule ({}). Must be 1.",
          top->calendarUID());
  top->ensureProjetDefaultWeekDays();
  fixCalendarHierarchy();

  for (const std::string& key : scheduleInfoKeys_) {
    const ScheduleInfo info = scheduleInfoForKey(key);
    const ScheduleInfo written = info->flatCopy() ? info->flatCopy() : info;
    xml::Element calendar = elementWithName("Calendar", mapper());
    written->setCalendar(calendar);
    mapScheduleInfo(*written);
    written->setCalendar({});
    calendars_.append(std::move(calendar));
  }
}

void MSPECalendarMapper::fixCalendarHierarchy() {
  for (const std::string& key : scheduleInfoKeys_) {
    const auto& parentKey = scheduleInfoForKey(key)->parentKey();
    if (!parentKey) continue;
    const ScheduleInfo parent = scheduleInfoForKey(*parentKey);
    require(parent != nullptr, "Can not find schedule info for key '{}'.", *parentKey);
    parent->setIsParentSchedule(true);
  }
  for (bool changed = true; changed;) {
    changed = false;
    for (const std::string& key : scheduleInfoKeys_) {
      const ScheduleInfo info = scheduleInfoForKey(key);
      if (!info->isParentSchedule() || info->isBaseCalendar()) continue;
      if (info->flatCopy()) {
        require(info->flatCopy()->isBaseCalendar(),
                "Flattened copy of a schedule info must be marked as base calendar.");
      } else if (info->parentKey()) {
        const ScheduleInfo copy = newFlatScheduleInfo(*info);
        copy->setIsBaseCalendar(true);
        info->setFlatCopy(copy);
        changed = true;
      } else {
        info->setIsBaseCalendar(true);
        changed = true;
      }
    }
  }
}

MSPECalendarMapper::ScheduleInfo MSPECalendarMapper::newFlatScheduleInfo(const MSPEScheduleInfo& info) {
  require(!info.flatCopy(), "Do not flatten schedule info which already has flattened copy!");
  auto copy = std::make_shared<MSPEScheduleInfo>();
  copy->setCalendarUID(MSPEMapper::nextCalendarUID());
  copy->setCalendarName(info.calendarName());
  copy->setExtendedFormat(info.extendedFormat());
  Sources sources = sourcesOf(info);
  for (std::int32_t day = kSunday; day <= kSaturday; ++day) {
    const auto* times = sources.day(day);
    require(times != nullptr, "We should eventually find working times, at least in Project default schedule.");
    copy->addWorkingTimes(*times, day);
  }
  if (sources.exceptions != nullptr) {
    const Exceptions& overtime = sources.exceptions->overtimeExceptions();
    const Exceptions& timeOff = sources.exceptions->timeOffExceptions();
    Budget::spend((overtime.size() + timeOff.size()) * sizeof(Exceptions::value_type));
    copy->setOvertimeExceptions(overtime);
    copy->setTimeOffExceptions(timeOff);
  }
  return copy;
}

const MSPECalendarMapper::Sources& MSPECalendarMapper::sourcesOf(const MSPEScheduleInfo& info) {
  std::vector<const MSPEScheduleInfo*> unknown;
  Sources sources;
  for (const MSPEScheduleInfo* current = &info; current != nullptr; current = parentOf(*current)) {
    if (const auto known = sources_.find(current); known != sources_.end()) {
      sources = known->second;
      break;
    }
    unknown.push_back(current);
  }
  for (auto current = unknown.rbegin(); current != unknown.rend(); ++current) {
    for (std::int32_t day = kSunday; day <= kSaturday; ++day) {
      const auto& times = (*current)->workingTimesForDayType(day);
      if (times) sources.day(day) = &times;
    }
    if ((*current)->hasOvertimeData() || (*current)->hasTimeOffData()) sources.exceptions = *current;
    sources_[*current] = sources;
  }
  return sources_.at(&info);
}

/// The schedule that this one inherits from; none for the top one.
const MSPEScheduleInfo* MSPECalendarMapper::parentOf(const MSPEScheduleInfo& info) const {
  if (!info.parentKey()) return nullptr;
  const ScheduleInfo parent = scheduleInfoForKey(*info.parentKey());
  require(parent != nullptr, "Schedule info has no parent info.");
  return parent.get();
}
