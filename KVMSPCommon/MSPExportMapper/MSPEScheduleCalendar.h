#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// A working period within a day.
struct MSPETimePeriod {
  std::int64_t startHour = 0;
  std::int64_t startMinute = 0;
  std::int64_t startSecond = 0;
  std::int64_t endHour = 0;
  std::int64_t endMinute = 0;
  std::int64_t endSecond = 0;

  /// In seconds from midnight.
  [[nodiscard]] double startTime() const;
  [[nodiscard]] double endTime() const;
  [[nodiscard]] double duration() const { return endTime() - startTime(); }
};

/// A week of working periods and the arithmetic with it. Weekdays are 1 (Sunday) to 7 (Saturday). Times of day and
/// amounts of working time are in seconds, midnights are those of the system zone, and successive days are 86400
/// seconds apart. For an invalid weekday, operations raise InvariantFailure unless they say otherwise.
///
///   const auto& calendar = MSPEScheduleCalendar::standardCalendar();  // weekdays 08:00-12:00, 13:00-17:00
///   calendar.date(friday16h, 2 * 3600, true)                          // Monday 09:00
///   calendar.date(friday16h, 3600, true, true)                        // Friday 17:00
///   calendar.date(friday16h, 3600, true, false)                       // Monday 08:00: no edge
class MSPEScheduleCalendar {
 public:
  struct WorkingDay {
    bool isWorkingDay = false;
    /// In the order they were added; none when none was added.
    std::optional<std::vector<MSPETimePeriod>> timePeriods;
  };

  /// A time of day.
  struct TimeOfDay {
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;
  };

  /// Where work can start.
  struct Start {
    platform::Instant date;
    double duration = 0;          ///< seconds from the day's midnight
    std::int64_t timePeriod = 0;  ///< index of the period within its day
  };

  static constexpr std::int64_t kNotFound = std::numeric_limits<std::int64_t>::max();

  /// No working days.
  MSPEScheduleCalendar() = default;
  /// Monday to Friday, 08:00-12:00 and 13:00-17:00.
  static MSPEScheduleCalendar initWithStandardCalendar();
  /// From the `schedule-day` children (`day-of-week`) of a source schedule and their `time-span`s (`start-time`,
  /// `end-time`: seconds from midnight, cut to whole ones; 0 when missing). Days of unknown name, and spans with a time
  /// that is not a number, are left out.
  static MSPEScheduleCalendar initWithKvdxSchedule(xml::Node schedule);
  /// The standard calendar of the process.
  static const MSPEScheduleCalendar& standardCalendar();

  /// Appends the period to the day, which becomes a working day.
  void addWorkingTimePeriod(const MSPETimePeriod& timePeriod, std::int64_t weekday);
  [[nodiscard]] const WorkingDay& workingDay(std::int64_t weekday) const;
  [[nodiscard]] bool isWorkingDayWeekday(std::int64_t weekday) const { return workingDay(weekday).isWorkingDay; }
  [[nodiscard]] std::int64_t timePeriodsInWeekday(std::int64_t weekday) const;
  /// -1 for an invalid weekday and for a day without periods. An index out of range raises a RangeException, here and
  /// in the next four operations.
  [[nodiscard]] double durationOfTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const;
  /// One second less than the periods' sum (the sum begins at -1); -1 for a day off.
  [[nodiscard]] double durationOfWeekday(std::int64_t weekday) const;
  /// When the period starts; none for an invalid weekday and for a day without periods.
  [[nodiscard]] std::optional<TimeOfDay> startHour(std::int64_t timePeriod, std::int64_t weekday) const;
  [[nodiscard]] std::optional<TimeOfDay> endHour(std::int64_t timePeriod, std::int64_t weekday) const;
  /// The same in seconds from midnight; -1 instead of none.
  [[nodiscard]] double startTimeForTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const;
  [[nodiscard]] double endTimeForTimePeriod(std::int64_t timePeriod, std::int64_t weekday) const;

  /// Index of the period in which an amount of working time ends when it is counted from the start of the day's first
  /// period (backward: from the end of the last); kNotFound when the day is too short or the amount is 0.
  [[nodiscard]] std::int64_t timePeriodFromDuration(double duration, bool forward, std::int64_t weekday) const;
  /// The same; `startedAt` is ignored.
  [[nodiscard]] std::int64_t timePeriodEndDuration(double duration, double startedAt, bool forward,
                                                   std::int64_t weekday) const;
  /// The start time of that period (not the point within it); -1 when there is none.
  [[nodiscard]] double dayTimeFromDuration(double duration, bool forward, std::int64_t weekday) const;
  [[nodiscard]] double dayTimeEndDuration(double duration, double startedAt, bool forward, std::int64_t weekday) const;

  [[nodiscard]] bool isWorkingDay(platform::Instant date) const;
  /// Where work can start at or after the instant (backward: at or before it); none when neither its day nor the next
  /// six have working time left. The end of a period (backward: the start) does not belong to it.
  [[nodiscard]] std::optional<Start> startDateStartDurationStartTimePeriod(platform::Instant forDate,
                                                                           bool forward) const;
  [[nodiscard]] std::optional<platform::Instant> startDate(platform::Instant forDate, bool forward) const;
  /// The instant, moved by an amount of working time.
  /// @param allowEdgeTime whether the result may be exactly the end (backward: the start) of a period; otherwise it is
  /// the next period's start (backward: end).
  /// @return none when no working time is found.
  /// @throws InvariantFailure without an instant, and for a negative amount.
  [[nodiscard]] std::optional<platform::Instant> date(std::optional<platform::Instant> date, double advanceByDuration,
                                                      bool forward, bool allowEdgeTime = true) const;
  /// The working time between two instants; 0 unless the first is the earlier one.
  [[nodiscard]] double workingTimeFromDate(platform::Instant date, platform::Instant toDate) const;

  [[nodiscard]] std::string description() const;

 private:
  class Countdown;

  [[nodiscard]] const MSPETimePeriod* period(std::int64_t index, std::int64_t weekday) const;
  [[nodiscard]] double startTimeOfPeriodFound(std::int64_t timePeriod, std::int64_t weekday) const;

  std::array<WorkingDay, 8> workingDays_;  ///< by weekday; the first entry is not used
};
