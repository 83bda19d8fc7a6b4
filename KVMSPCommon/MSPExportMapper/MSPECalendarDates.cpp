#include "KVMSPCommon/MSPExportMapper/MSPECalendarDates.h"

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"

platform::Instant calendarDate(xml::Node element, const char* attribute) {
  const auto text = element.attributeText(attribute);
  MSPCDateComponents record;
  const MSPCUnitFlags flags = MSPIUtilities::updateDateTimeComponentsFromISODateTime(record, platform::orEmpty(text));
  platform::require(flags != kMSPCUnitsError && (flags & kMSPCDateUnits) != 0,
                    "Calendar element '{}' has no valid date in its attribute '{}': {}.", element.name(), attribute,
                    platform::orNull(text));
  return MSPIUtilities::kvdxToMppDateTime(*text).value();
}
