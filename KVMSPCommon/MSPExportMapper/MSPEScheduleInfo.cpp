#include "KVMSPCommon/MSPExportMapper/MSPEScheduleInfo.h"

#include <fmt/format.h>

#include <algorithm>

#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerHour;
using platform::require;

namespace {

/// The default week's working times of a day.
MSPEScheduleInfo::WorkingTimes defaultWorkingTimes(std::int32_t dayType) {
  if (dayType == kSunday || dayType == kSaturday) return {};
  return {MSPEWorkingTime(8 * kSecondsPerHour, 12 * kSecondsPerHour),
          MSPEWorkingTime(13 * kSecondsPerHour, 17 * kSecondsPerHour)};
}

std::string joined(const MSPEScheduleInfo::Exceptions& exceptions) {
  std::string text;
  for (const auto& set : exceptions) text += set->description();
  return text;
}

}  // namespace

MSPEScheduleInfo::MSPEScheduleInfo(xml::Node kvdxResource, std::optional<std::string> parentKey,
                                   std::int64_t calendarUID, std::string calendarName)
    : kvdxResource_(kvdxResource),
      parentKey_(std::move(parentKey)),
      calendarUID_(calendarUID),
      calendarName_(std::move(calendarName)),
      isBaseCalendar_(!parentKey_) {}

void MSPEScheduleInfo::setProjetDefaults() {
  isBaseCalendar_ = true;
  for (std::int32_t day = kSunday; day <= kSaturday; ++day) slot(day) = defaultWorkingTimes(day);
  overtimeExceptions_.clear();
  timeOffExceptions_.clear();
}

void MSPEScheduleInfo::ensureProjetDefaultWeekDays() {
  for (std::int32_t day = kSunday; day <= kSaturday; ++day) {
    if (!slot(day)) slot(day) = defaultWorkingTimes(day);
  }
}

bool MSPEScheduleInfo::hasWeekDaysData() const {
  return std::any_of(workingTimes_.begin(), workingTimes_.end(), [](const auto& times) { return times.has_value(); });
}

std::optional<MSPEScheduleInfo::WorkingTimes>& MSPEScheduleInfo::slot(std::int32_t dayType) {
  require(dayType >= 0 && dayType <= kSaturday, "Incorrect value of argument dayType ({}).", dayType);
  return workingTimes_[static_cast<std::size_t>(dayType)];
}

void MSPEScheduleInfo::removeWorkingTimesForDayType(std::int32_t dayType) { slot(dayType).reset(); }

MSPEScheduleInfo::WorkingTimes& MSPEScheduleInfo::resetWorkingTimesForDayType(std::int32_t dayType) {
  return slot(dayType).emplace();
}

void MSPEScheduleInfo::addWorkingTime(std::optional<MSPEWorkingTime> workingTime, std::int32_t forDayType) {
  require(workingTime.has_value(), "No working time specified to add.");
  auto& times = slot(forDayType);
  if (!times) times.emplace();
  times->push_back(*workingTime);
}

void MSPEScheduleInfo::addWorkingTimes(const std::optional<WorkingTimes>& workingTimes, std::int32_t forDayType) {
  if (workingTimes) platform::Budget::spend(workingTimes->size() * sizeof(MSPEWorkingTime));
  slot(forDayType) = workingTimes;
}

const std::optional<MSPEScheduleInfo::WorkingTimes>& MSPEScheduleInfo::workingTimesForDayType(
    std::int32_t dayType) const {
  return const_cast<MSPEScheduleInfo*>(this)->slot(dayType);
}

std::string MSPEScheduleInfo::description() const {
  std::string days;
  for (std::int32_t day = kSunday; day <= kSaturday; ++day) {
    const auto& times = workingTimesForDayType(day);
    std::string list;
    if (times) {
      for (const MSPEWorkingTime& time : *times) list += time.description();
    }
    days += fmt::format("\n  {} ({}): {}", kDayNames[static_cast<std::size_t>(day)], times ? times->size() : 0,
                        times ? list : "(null)");
  }
  return fmt::format(
      "\nMSPEScheduleInfo resourceID={} parentKey={} isBaseCalendar={} hasData={} calendar={}\nworkingTimes: {}"
      "\novertime ({}): {}\ntimeOff ({}): {}",
      platform::orNull(kvdxResource_.attributeText("id")), fmt::ptr(parentKey_ ? parentKey_->data() : nullptr),
      isBaseCalendar_ ? "YES" : "NO", hasData() ? "YES" : "NO", calendar_.identity(), days, overtimeExceptions_.size(),
      joined(overtimeExceptions_), timeOffExceptions_.size(), joined(timeOffExceptions_));
}
