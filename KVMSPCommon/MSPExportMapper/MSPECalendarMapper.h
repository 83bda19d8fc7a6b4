#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEScheduleInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/Base/IdHash.h"

/// Turns the schedules of the resource tree, each of which has only what differs from its parent's, into MSPDI's two
/// levels: base calendars, and resource calendars that name one. Reads a schedule for each resource while resources are
/// mapped; writes all calendars when every resource is known.
class MSPECalendarMapper final : public MSPEObjectMapperBase {
 public:
  explicit MSPECalendarMapper(MSPEMapper& mapper);

  /// Id of the top resource, whose schedule is the project's; set before any resource is mapped.
  [[nodiscard]] const std::optional<std::string>& topScheduleKey() const { return topScheduleKey_; }
  void setTopScheduleKey(std::optional<std::string> key) { topScheduleKey_ = std::move(key); }

  /// The `Calendars` element, filled by buildCalendarHierarchy().
  [[nodiscard]] const xml::Section& calendars() const { return calendars_; }
  /// Gives the `Calendars` element to the project. calendars() still refers to it, but only until the tasks are mapped.
  [[nodiscard]] std::unique_ptr<xml::Section> takeCalendars() { return std::move(detachedCalendars_); }
  /// The `Calendar` of the resource mapped last; empty, since elements are made only when the hierarchy is built.
  [[nodiscard]] xml::OutputNode calendar() const { return calendar_; }

  /// Reads the resource's schedule; called for every resource, the top one first and with an empty parent.
  /// @return the resource's calendar UID, at least 1.
  /// @throws InvariantFailure when the source is inconsistent, and when the top resource is not the first of the
  /// process to be given a calendar UID.
  std::int64_t mapCalendarForResource(xml::Node kvdxResource, xml::Node parentResource);

  /// Decides which schedules are base calendars, makes flattened copies of the other schedules that are inherited from,
  /// and writes one `Calendar` for each resource, in the order they were mapped.
  void buildCalendarHierarchy();

 private:
  using ScheduleInfo = std::shared_ptr<MSPEScheduleInfo>;
  using Exceptions = MSPEScheduleInfo::Exceptions;

  /// Where a schedule's contents come from. For each day type: the list of the nearest schedule, from this one upwards,
  /// that defines the day. For exceptions, which are inherited as a whole: the nearest schedule that has any. Null when
  /// no schedule defines them.
  struct Sources {
    std::array<const std::optional<MSPEScheduleInfo::WorkingTimes>*, kSaturday + 1> days{};
    const MSPEScheduleInfo* exceptions = nullptr;

    auto& day(std::int32_t dayType) { return days[static_cast<std::size_t>(dayType)]; }
  };

  // Reading.
  [[nodiscard]] const std::optional<std::string>& idOf(xml::Node group);
  xml::OutputNode newCalendarFromKvdxResource(xml::Node kvdxResource, xml::Node parentResource,
                                              std::int64_t& calendarUID);
  void readSchedule(xml::Node schedule, bool isTop, MSPEScheduleInfo& info);
  void readWeekDays(xml::Node schedule, MSPEScheduleInfo& info);
  void readDatedDays(const std::vector<xml::Node>& days, MSPEScheduleInfo& info);
  void readExceptionCalendars(xml::Node schedule, MSPEScheduleInfo& info);

  // Hierarchy.
  void fixCalendarHierarchy();
  [[nodiscard]] ScheduleInfo newFlatScheduleInfo(const MSPEScheduleInfo& info);
  /// The schedule's sources, found once and kept, also for the schedules that it inherits from.
  [[nodiscard]] const Sources& sourcesOf(const MSPEScheduleInfo& info);
  [[nodiscard]] const MSPEScheduleInfo* parentOf(const MSPEScheduleInfo& info) const;
  /// The schedule under the key, or none.
  [[nodiscard]] ScheduleInfo scheduleInfoForKey(const std::string& key) const;

  // Writing.
  void mapScheduleInfo(const MSPEScheduleInfo& info);
  void mapScheduleInfo(const MSPEScheduleInfo& info, xml::OutputNode toCalendar);
  void mapWeekDays(const MSPEScheduleInfo& info, xml::OutputNode weekDays);
  /// Writes the sets twice: as week days of type 0, for older readers, and as exceptions.
  /// @param weekDays, exceptions the calendar's containers; made when they are needed and still empty.
  void mapScheduleExceptions(const Exceptions& sets, xml::OutputNode toCalendar, xml::OutputNode& weekDays,
                             xml::OutputNode& exceptions);
  /// Writes each exception of the overtime sets as a work week that lists its days.
  void mapTimeOffExceptionsBG(const Exceptions& sets, xml::OutputNode toCalendar, xml::OutputNode& workWeeks);
  /// Always returns none, since time-off exceptions have no overtime.
  [[nodiscard]] ScheduleInfo newOvertimeFromTimeOffExceptionsScheduleInfo(const MSPEScheduleInfo& info) const;

  std::unique_ptr<xml::Section> detachedCalendars_;  ///< none after it was taken
  xml::Section& calendars_;
  xml::OutputNode calendar_;
  std::optional<std::string> topScheduleKey_;
  std::vector<std::string> scheduleInfoKeys_;  ///< in the order the schedules were read
  std::unordered_map<std::string, ScheduleInfo, platform::IdHash> scheduleInfoMap_;
  std::unordered_map<const void*, std::optional<std::string>> groupIds_;
  std::unordered_map<const MSPEScheduleInfo*, Sources> sources_;
};
