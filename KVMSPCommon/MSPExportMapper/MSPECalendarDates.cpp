#include "KVMSPCommon/MSPExportMapper/MSPECalendarDates.h"

#include <cmath>

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/TimeZone.h"

using platform::Instant;
using platform::require;

Instant calendarDate(xml::Node element, const char* attribute) {
  const auto text = element.attributeText(attribute);
  require(text && !text->empty(), "Calendar element '{}' has no valid date in its attribute '{}': {}.", element.name(),
          attribute, platform::orNull(text));
  return MSPIUtilities::kvdxToMppDateTime(*text).value();
}

void requireCountableDays(Instant date) {
  // A double holds every whole number up to 2^53, which is slightly more.
  constexpr double kFarthestSecond = 9e15;
  if (std::abs(date.seconds) <= kFarthestSecond) return;
  const auto civil = platform::TimeZone::system().civilFromInstant(date);
  require(false, "The date {}-{:02d}-{:02d} is too far away. Days can be counted for some 285 million years.",
          civil.year, civil.month, civil.day);
}
