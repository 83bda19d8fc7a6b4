// The part of MSPECalendarMapper that writes one `Calendar`.

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarMapper.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;
using platform::kSecondsPerDay;
using platform::require;

namespace {

using Period = MSPECalendarExceptions::Period;

constexpr std::string_view kExceptionDayType = "0";

/// Far above any real exception; a work week lists every one of its days.
constexpr std::int64_t kMaximumWorkWeekDays = 100'000;

Period requiredPeriod(const MSPECalendarExceptions& set, std::int64_t index) {
  const auto period = set.exception(index);
  require(period.has_value(), "Failed to get time period from MPP Calendar Exception Info.");
  return *period;
}

void addTimePeriod(xml::OutputNode parent, const Period& period) {
  const xml::OutputNode element = addChildElementWithName(parent, "TimePeriod");
  addChildElementWithName(element, "FromDate", MSPIUtilities::mppToMspdiDateStartTime(period.fromDate));
  addChildElementWithName(element, "ToDate", MSPIUtilities::mppToMspdiDateEndTime(period.toDate));
}

void addWorkingTime(xml::OutputNode workingTimes, const MSPEWorkingTime& time) {
  const xml::OutputNode element = addChildElementWithName(workingTimes, "WorkingTime");
  addChildElementWithName(element, "FromTime", MSPIUtilities::hourMinSecFromDuration(time.fromTime()));
  addChildElementWithName(element, "ToTime", MSPIUtilities::hourMinSecFromDuration(time.toTime()));
}

/// The working times of one exception, also when there are none.
void addWorkingTimes(xml::OutputNode parent, const MSPECalendarExceptions& set, std::int64_t index) {
  const xml::OutputNode element = addChildElementWithName(parent, "WorkingTimes");
  const std::int64_t count = set.exceptionWorkingTimesCount(index).value_or(0);
  for (std::int64_t i = 0; i < count; ++i) {
    if (const auto time = set.exception(index, i)) addWorkingTime(element, *time);
  }
}

/// One exception as a week day of type 0: DayType, DayWorking, TimePeriod, WorkingTimes of overtime.
void addExceptionWeekDay(xml::OutputNode weekDays, const MSPECalendarExceptions& set, std::int64_t index) {
  const xml::OutputNode element = addChildElementWithName(weekDays, "WeekDay");
  addChildElementWithName(element, "DayType", kExceptionDayType);
  addChildElementWithName(element, "DayWorking", mspdiFlag(set.overtime()));
  addTimePeriod(element, requiredPeriod(set, index));
  if (set.overtime()) addWorkingTimes(element, set, index);
}

void addException(xml::OutputNode exceptions, const MSPECalendarExceptions& set, std::int64_t index) {
  const Period period = requiredPeriod(set, index);
  const xml::OutputNode element = addChildElementWithName(exceptions, "Exception");
  addChildElementWithName(element, "EnteredByOccurrences", "0");
  addTimePeriod(element, period);
  addChildElementWithName(element, "Occurrences", std::to_string(period.numberOfDays));
  // A nameless set is called so whatever it holds.
  addChildElementWithName(element, "Name",
                          stringByReplacingOccurrencesOfNewline(set.calendarName().value_or("Overtime")));
  addChildElementWithName(element, "Type", "1");
  addChildElementWithName(element, "DayWorking", mspdiFlag(set.overtime()));
  if (set.overtime()) addWorkingTimes(element, set, index);
}

}  // namespace

void MSPECalendarMapper::mapScheduleInfo(const MSPEScheduleInfo& info) {
  const xml::OutputNode calendar = info.calendar();
  require(static_cast<bool>(calendar), "Schedule info has no associated calendar object.");
  addChildElementWithName(calendar, "UID", std::to_string(info.calendarUID()));
  addChildElementWithName(calendar, "Name", stringByReplacingOccurrencesOfNewline(info.calendarName()));
  addChildElementWithName(calendar, "IsBaseCalendar", mspdiFlag(info.isBaseCalendar()));
  if (info.isBaseCalendar()) {
    addChildElementWithName(calendar, "BaseCalendarUID", "-1");
  } else {
    require(info.parentKey().has_value(), "Schedule info has no parent key.");
    const ScheduleInfo parent = scheduleInfoForKey(*info.parentKey());
    require(parent != nullptr, "Schedule info has no parent info.");
    require(parent->isBaseCalendar() || parent->flatCopy(),
            "Non-base parent schedule must have its flattened copy to make base calendar.");
    const MSPEScheduleInfo& base = parent->isBaseCalendar() ? *parent : *parent->flatCopy();
    addChildElementWithName(calendar, "BaseCalendarUID", std::to_string(base.calendarUID()));
  }
  mapScheduleInfo(info, calendar);
}

void MSPECalendarMapper::mapScheduleInfo(const MSPEScheduleInfo& info, xml::OutputNode toCalendar) {
  xml::OutputNode weekDays;
  xml::OutputNode exceptions;
  xml::OutputNode workWeeks;
  if (info.hasWeekDaysData()) {
    weekDays = addChildElementWithName(toCalendar, "WeekDays");
    mapWeekDays(info, weekDays);
  }
  if (info.hasOvertimeData()) {
    mapScheduleExceptions(info.overtimeExceptions(), toCalendar, weekDays, exceptions);
    if (info.extendedFormat()) mapTimeOffExceptionsBG(info.overtimeExceptions(), toCalendar, workWeeks);
  }
  if (info.hasTimeOffData()) mapScheduleExceptions(info.timeOffExceptions(), toCalendar, weekDays, exceptions);
}

void MSPECalendarMapper::mapWeekDays(const MSPEScheduleInfo& info, xml::OutputNode weekDays) {
  for (std::int32_t day = kSunday; day <= kSaturday; ++day) {
    const auto& times = info.workingTimesForDayType(day);
    if (!times) continue;
    const xml::OutputNode weekDay = addChildElementWithName(weekDays, "WeekDay");
    addChildElementWithName(weekDay, "DayType", std::to_string(day));
    addChildElementWithName(weekDay, "DayWorking", mspdiFlag(!times->empty()));
    if (times->empty()) continue;
    const xml::OutputNode workingTimes = addChildElementWithName(weekDay, "WorkingTimes");
    for (const MSPEWorkingTime& time : *times) addWorkingTime(workingTimes, time);
  }
}

void MSPECalendarMapper::mapScheduleExceptions(const Exceptions& sets, xml::OutputNode toCalendar,
                                               xml::OutputNode& weekDays, xml::OutputNode& exceptions) {
  for (const auto& set : sets) {
    if (set->exceptionsCount() == 0) continue;
    if (!weekDays) weekDays = addChildElementWithName(toCalendar, "WeekDays");
    if (!exceptions) exceptions = addChildElementWithName(toCalendar, "Exceptions");
    for (std::int64_t i = 0; i < set->exceptionsCount(); ++i) {
      if (mapper().fiterType() == 1) addExceptionWeekDay(weekDays, *set, i);
      addException(exceptions, *set, i);
    }
  }
}

void MSPECalendarMapper::mapTimeOffExceptionsBG(const Exceptions& sets, xml::OutputNode toCalendar,
                                                xml::OutputNode& workWeeks) {
  const platform::TimeZone& zone = platform::TimeZone::system();
  for (const auto& set : sets) {
    require(set->overtime(), "Expected overtime exceptions.");
    if (set->exceptionsCount() == 0) continue;
    if (!workWeeks) workWeeks = addChildElementWithName(toCalendar, "WorkWeeks");
    for (std::int64_t i = 0; i < set->exceptionsCount(); ++i) {
      const Period period = requiredPeriod(*set, i);
      require(period.numberOfDays <= kMaximumWorkWeekDays,
              "Overtime exception of calendar '{}' is too long: {} days, at most {} can be exported.",
              platform::orNull(set->calendarName()), period.numberOfDays, kMaximumWorkWeekDays);
      const xml::OutputNode workWeek = addChildElementWithName(workWeeks, "WorkWeek");
      const xml::OutputNode weekDays = addChildElementWithName(workWeek, "WeekDays");
      addTimePeriod(workWeek, period);
      addChildElementWithName(workWeek, "Name", "Exception days");
      // Steps of 86400 seconds: where a clock change makes a day longer, its weekday comes twice.
      for (Instant date = period.fromDate; date < period.toDate; date = date + kSecondsPerDay) {
        const std::int32_t dayType = zone.weekday(date);
        require(dayType >= kSunday && dayType <= kSaturday, "Incorrect dayType ({}). Must be from 1 to 7.", dayType);
        const xml::OutputNode weekDay = addChildElementWithName(weekDays, "WeekDay");
        addChildElementWithName(weekDay, "DayType", std::to_string(dayType));
        addChildElementWithName(weekDay, "DayWorking", "0");
      }
    }
  }
}

MSPECalendarMapper::ScheduleInfo MSPECalendarMapper::newOvertimeFromTimeOffExceptionsScheduleInfo(
    const MSPEScheduleInfo& /*info*/) const {
  return nullptr;
}
