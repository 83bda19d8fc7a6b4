#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEExceptionInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEKvdxEventInfo.h"
#include "Platform/XML/XMLTree.h"

/// One set of deviations from the normal week, either overtime or time off. Holds the source's events, which may span
/// days and overlap, and the exceptions without overlaps computed from them.
class MSPECalendarExceptions {
 public:
  /// When and for how long an exception holds.
  struct Period {
    platform::Instant fromDate;
    platform::Instant toDate;
    std::int64_t numberOfDays = 0;  ///< the length in days of 86400 seconds, rounded up
  };

  /// From a source `calendar` element of a classic schedule: `name`, `overtime`, and its `event` children.
  static MSPECalendarExceptions initWithKvdxCalendar(xml::Node calendar);
  /// From the dated `flattened-schedule-day` elements of a flattened schedule; each `time-span` of an overtime day is
  /// one event (start-time and end-time in seconds from midnight), a day off is an event without a time range.
  /// @throws InvariantFailure when an overtime day has no `time-span`, or a day off has one.
  static MSPECalendarExceptions initWithKvdxFlattenedExceptions(const std::vector<xml::Node>& days, bool overtime);
  /// From events made elsewhere.
  MSPECalendarExceptions(std::optional<std::string> calendarName, bool overtime, std::vector<MSPEKvdxEventInfo> events);

  /// Computes the exceptions. A new one begins wherever the set of events that hold changes; it has the time ranges of
  /// all of them, in order of their start:
  ///
  ///   events       Mon-Wed 08:00-12:00, Wed-Fri 13:00-17:00
  ///   exceptions   Mon-Tue 08:00-12:00, Wed 08:00-12:00 and 13:00-17:00, Thu-Fri 13:00-17:00
  ///
  /// Neighbouring exceptions with equal working times become one, even when days without any event lie between them.
  /// @throws InvariantFailure when events overlap so much that the result would have more than a million working times,
  /// and when one of them is too far away for its days to be counted.
  void mapEvents();

  /// The set's name; none when its source has no `name`.
  [[nodiscard]] const std::optional<std::string>& calendarName() const { return calendarName_; }
  [[nodiscard]] bool overtime() const { return overtime_; }
  /// In order of fromDate, then toDate.
  [[nodiscard]] const std::vector<MSPEKvdxEventInfo>& kvdxEventInfos() const { return kvdxEventInfos_; }
  /// In order of time; empty until mapEvents().
  [[nodiscard]] const std::vector<MSPEExceptionInfo>& mppExceptionInfos() const { return mppExceptionInfos_; }

  // Access to the computed exceptions by index; none for an index out of range.

  [[nodiscard]] std::int64_t exceptionsCount() const { return static_cast<std::int64_t>(mppExceptionInfos_.size()); }
  [[nodiscard]] std::optional<Period> exception(std::int64_t index) const;
  [[nodiscard]] std::optional<std::int64_t> exceptionWorkingTimesCount(std::int64_t index) const;
  [[nodiscard]] std::optional<MSPEWorkingTime> exception(std::int64_t index, std::int64_t workingTime) const;

  [[nodiscard]] std::string description() const;

 private:
  void sweep();
  void mergeEqualNeighbours();

  std::optional<std::string> calendarName_;
  bool overtime_;
  std::vector<MSPEKvdxEventInfo> kvdxEventInfos_;
  std::vector<MSPEExceptionInfo> mppExceptionInfos_;
};
