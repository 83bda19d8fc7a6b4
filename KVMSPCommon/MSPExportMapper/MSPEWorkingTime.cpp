#include "KVMSPCommon/MSPExportMapper/MSPEWorkingTime.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"

std::string MSPEWorkingTime::description() const {
  return fmt::format("MSPEWorkingTime: [{}-{}] ", MSPIUtilities::hourMinSecFromDuration(fromTime_),
                     MSPIUtilities::hourMinSecFromDuration(toTime_));
}
