#pragma once

#include <optional>
#include <string>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEWorkingTime.h"
#include "Platform/Time/Instant.h"

/// One exception of a calendar: a range of days that all have the same working times.
class MSPEExceptionInfo {
 public:
  explicit MSPEExceptionInfo(platform::Instant fromDate, std::optional<platform::Instant> toDate = std::nullopt)
      : fromDate_(fromDate), toDate_(toDate) {}

  [[nodiscard]] platform::Instant fromDate() const { return fromDate_; }
  void setFromDate(platform::Instant date) { fromDate_ = date; }
  /// The last instant; none until it is known.
  [[nodiscard]] std::optional<platform::Instant> toDate() const { return toDate_; }
  void setToDate(platform::Instant date) { toDate_ = date; }
  /// The list, to be changed in place. When it is empty, nobody works on these days.
  [[nodiscard]] std::vector<MSPEWorkingTime>& workingTimes() { return workingTimes_; }
  [[nodiscard]] const std::vector<MSPEWorkingTime>& workingTimes() const { return workingTimes_; }

  [[nodiscard]] std::string description() const;

 private:
  platform::Instant fromDate_;
  std::optional<platform::Instant> toDate_;
  std::vector<MSPEWorkingTime> workingTimes_;
};
