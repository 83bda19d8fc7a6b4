#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPECalendarExceptions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWorkingTime.h"
#include "Platform/XML/XMLOutput.h"
#include "Platform/XML/XMLTree.h"

/// One working schedule: the project's (that of its top resource), another resource's, or a flattened copy of one. For
/// each day of the week it either has a list of working times or none, and then the parent's schedule holds. It also
/// lists the exceptions to the week.
class MSPEScheduleInfo {
 public:
  using WorkingTimes = std::vector<MSPEWorkingTime>;
  using Exceptions = std::vector<std::shared_ptr<const MSPECalendarExceptions>>;

  /// An empty record, to be filled as a flattened copy.
  MSPEScheduleInfo() = default;
  /// @param parentKey id of the resource whose schedule this one inherits from; none makes a base calendar.
  MSPEScheduleInfo(xml::Node kvdxResource, std::optional<std::string> parentKey, std::int64_t calendarUID,
                   std::string calendarName);

  /// Makes it a base calendar with the default week (Monday to Friday 08:00-12:00 and 13:00-17:00) and no exceptions.
  void setProjetDefaults();  // spelled so on purpose, as the next
  /// Gives the default week's times to the days that have no list. An empty list (nobody works) is kept.
  void ensureProjetDefaultWeekDays();

  [[nodiscard]] bool hasData() const { return hasWeekDaysData() || hasOvertimeData() || hasTimeOffData(); }
  /// Whether any day has a list, even an empty one.
  [[nodiscard]] bool hasWeekDaysData() const;
  [[nodiscard]] bool hasOvertimeData() const { return !overtimeExceptions_.empty(); }
  [[nodiscard]] bool hasTimeOffData() const { return !timeOffExceptions_.empty(); }

  // Day types are 1 (Sunday) to 7 (Saturday), as in MSPDI; 0 is accepted and never filled. Any other raises
  // InvariantFailure.

  /// Removes the day's list.
  void removeWorkingTimesForDayType(std::int32_t dayType);
  /// Gives the day a new, empty list and returns it to be filled.
  WorkingTimes& resetWorkingTimesForDayType(std::int32_t dayType);
  /// @param workingTime none raises InvariantFailure.
  void addWorkingTime(std::optional<MSPEWorkingTime> workingTime, std::int32_t forDayType);
  /// Replaces the day's list by a copy; none leaves the day without one.
  void addWorkingTimes(const std::optional<WorkingTimes>& workingTimes, std::int32_t forDayType);
  /// None when the schedule does not define the day; empty when nobody works.
  [[nodiscard]] const std::optional<WorkingTimes>& workingTimesForDayType(std::int32_t dayType) const;

  /// The source resource; empty for a flattened copy.
  [[nodiscard]] xml::Node kvdxResource() const { return kvdxResource_; }
  [[nodiscard]] const std::optional<std::string>& parentKey() const { return parentKey_; }
  /// The `Calendar` that carries the schedule; empty until the hierarchy is built.
  [[nodiscard]] xml::OutputNode calendar() const { return calendar_; }
  void setCalendar(xml::OutputNode calendar) { calendar_ = calendar; }
  [[nodiscard]] std::int64_t calendarUID() const { return calendarUID_; }
  void setCalendarUID(std::int64_t uid) { calendarUID_ = uid; }
  [[nodiscard]] const std::string& calendarName() const { return calendarName_; }
  void setCalendarName(std::string name) { calendarName_ = std::move(name); }
  /// The flattened copy that serves other schedules as base calendar; none unless one was needed.
  [[nodiscard]] const std::shared_ptr<MSPEScheduleInfo>& flatCopy() const { return flatCopy_; }
  void setFlatCopy(std::shared_ptr<MSPEScheduleInfo> copy) { flatCopy_ = std::move(copy); }
  /// Whether the source schedule has `flattened-schedule-day` elements.
  [[nodiscard]] bool extendedFormat() const { return extendedFormat_; }
  void setExtendedFormat(bool extendedFormat) { extendedFormat_ = extendedFormat; }
  [[nodiscard]] bool isBaseCalendar() const { return isBaseCalendar_; }
  void setIsBaseCalendar(bool isBaseCalendar) { isBaseCalendar_ = isBaseCalendar; }
  /// Whether another schedule inherits from this one.
  [[nodiscard]] bool isParentSchedule() const { return isParentSchedule_; }
  void setIsParentSchedule(bool isParentSchedule) { isParentSchedule_ = isParentSchedule; }
  [[nodiscard]] Exceptions& overtimeExceptions() { return overtimeExceptions_; }
  [[nodiscard]] const Exceptions& overtimeExceptions() const { return overtimeExceptions_; }
  void setOvertimeExceptions(Exceptions exceptions) { overtimeExceptions_ = std::move(exceptions); }
  [[nodiscard]] Exceptions& timeOffExceptions() { return timeOffExceptions_; }
  [[nodiscard]] const Exceptions& timeOffExceptions() const { return timeOffExceptions_; }
  void setTimeOffExceptions(Exceptions exceptions) { timeOffExceptions_ = std::move(exceptions); }

  [[nodiscard]] std::string description() const;

 private:
  [[nodiscard]] std::optional<WorkingTimes>& slot(std::int32_t dayType);

  xml::Node kvdxResource_;
  std::optional<std::string> parentKey_;
  xml::OutputNode calendar_;
  std::int64_t calendarUID_ = 0;
  std::string calendarName_;
  bool isBaseCalendar_ = false;
  bool isParentSchedule_ = false;
  bool extendedFormat_ = false;
  std::shared_ptr<MSPEScheduleInfo> flatCopy_;
  std::array<std::optional<WorkingTimes>, 8> workingTimes_;
  Exceptions overtimeExceptions_;
  Exceptions timeOffExceptions_;
};
