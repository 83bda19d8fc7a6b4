#include "KVMSPCommon/MSPExportMapper/MSPEExceptionInfo.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"

std::string MSPEExceptionInfo::description() const {
  std::string text = fmt::format("MSPEExceptionInfo  fromDate='{}' toDate='{}' workingTimes={}:",
                                 platform::orNull(MSPIUtilities::mppToMspdiDateTime(fromDate_)),
                                 platform::orNull(MSPIUtilities::mppToMspdiDateTime(toDate_)), workingTimes_.size());
  for (const MSPEWorkingTime& time : workingTimes_) {
    text += fmt::format("  {{fromTime={} toTime={}}}", MSPIUtilities::hourMinSecFromDuration(time.fromTime()),
                        MSPIUtilities::hourMinSecFromDuration(time.toTime()));
  }
  return text;
}
