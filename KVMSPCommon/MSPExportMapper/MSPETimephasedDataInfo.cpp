#include "KVMSPCommon/MSPExportMapper/MSPETimephasedDataInfo.h"

#include <algorithm>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPECalendarDates.h"
#include "KVMSPCommon/MSPExportMapper/MSPEWeekdays.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;

namespace {

/// About 270 years. No task or gap takes as long, so one of the dates must be wrong.
constexpr double kMaximumDays = 100'000;

}  // namespace

MSPETimephasedDataInfo::MSPETimephasedDataInfo(std::string_view startDate, std::string_view endDate, double effort,
                                               MSPEMapper& mapper)
    : startDate_(MSPIUtilities::kvdxToMppDateTime(startDate)),
      endDate_(MSPIUtilities::kvdxToMppDateTime(endDate)),
      effort_(effort),
      mapper_(mapper) {}

void MSPETimephasedDataInfo::addTimephasedDataToArray(std::vector<xml::Element>& array,
                                                      std::vector<bool>* workingDays) const {
  if (!startDate_ || !endDate_ || *startDate_ >= *endDate_) return;
  const double days = (*endDate_ - *startDate_) / platform::kSecondsPerDay;
  platform::require(days <= kMaximumDays,
                    "Timephased data from {} to {} has too many days. At most {} can be exported.",
                    platform::orNull(MSPIUtilities::mppToMspdiDateTime(startDate_)),
                    platform::orNull(MSPIUtilities::mppToMspdiDateTime(endDate_)), kMaximumDays);

  requireCountableDays(*startDate_);
  requireCountableDays(*endDate_);
  const platform::TimeZone& zone = platform::TimeZone::system();
  Instant start = *startDate_;
  while (start < *endDate_) {
    const Instant dayEnd = zone.endOfDay(start);
    const xml::OutputNode data = array.emplace_back(elementWithName("TimephasedData", mapper_));
    addChildElementWithName(data, "Type", "1");
    addChildElementWithName(data, "Unit", "1");
    addChildElementWithName(data, "Start", MSPIUtilities::mppToMspdiDateTime(start));
    addChildElementWithName(data, "Finish", MSPIUtilities::mppToMspdiDateTime(std::min(dayEnd, *endDate_)));
    if (effort_ >= 0) addChildElementWithName(data, "Value", MSPIUtilities::mppToMspdiDuration(effort_));
    if (workingDays != nullptr) {
      const int weekday = zone.weekday(start);
      workingDays->push_back(weekday != kSunday && weekday != kSaturday);
    }
    start = dayEnd + 1;
  }
}
