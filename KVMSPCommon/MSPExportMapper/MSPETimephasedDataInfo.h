#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/Time/Instant.h"

/// A stretch of time to be written as `TimephasedData`, one element for each calendar day of the machine's zone.
class MSPETimephasedDataInfo {
 public:
  /// @param startDate, endDate in kvdx form; without a zone, wall-clock time of the system zone.
  /// @param effort seconds, written as the `Value` of every day; negative for no `Value`.
  MSPETimephasedDataInfo(std::string_view startDate, std::string_view endDate, double effort, MSPEMapper& mapper);

  /// Appends an element for each day (Type, Unit, Start, Finish, Value): the first from the start, the others from
  /// midnight, each to 23:59:59 or to the end. Nothing unless the start is before the end.
  /// @param workingDays when given, receives for each element whether its day is neither Sunday nor Saturday.
  /// @throws InvariantFailure when these are more than 100000 days, and when they are too far away to be counted.
  void addTimephasedDataToArray(std::vector<xml::Element>& array, std::vector<bool>* workingDays) const;

 private:
  std::optional<platform::Instant> startDate_;
  std::optional<platform::Instant> endDate_;
  double effort_;
  MSPEMapper& mapper_;
};
