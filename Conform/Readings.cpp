#include "Conform/Readings.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUsualDateTime.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/GregorianCalendar.h"

namespace conform {
namespace {

using platform::orEmpty;

using Doubt = std::optional<std::string>;

bool isInCalendar(const MSPCDateComponents& record) { return platform::GregorianCalendar::has(record.civil()); }

/// Whether the text is what nearly all numbers are: a few digits, which any way of reading takes alike.
bool isPlainNumber(std::string_view text) {
  constexpr std::size_t kMostDigits = 15;
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return !text.empty() && text.size() <= kMostDigits && std::all_of(text.begin(), text.end(), isDigit);
}

std::string notInCalendar(std::string_view name, std::string_view text, const Doubt& reading) {
  return fmt::format("{} '{}' is in no calendar, {} is written", name, text, orEmpty(reading));
}

std::string notReadWhole(std::string_view name, std::string_view text, const Doubt& reading) {
  if (text.empty()) return fmt::format("{} is empty", name);
  if (!MSPIUtilities::isIsoiDateTime(text)) return fmt::format("{} '{}' is no date, year 1 is written", name, text);
  return fmt::format("{} '{}' is not read whole, {} is written", name, text, orEmpty(reading));
}

/// The doubt of a date that is read in the machine's zone.
/// @param isWhole whether the record has all that the text says.
Doubt doubtOfReading(std::string_view name, std::string_view text, bool isWhole, const MSPCDateComponents& record) {
  if (isWhole && isInCalendar(record)) return std::nullopt;
  const auto reading = MSPIUtilities::mppToMspdiDateTime(MSPIUtilities::kvdxToMppDateTime(text));
  return isWhole ? notInCalendar(name, text, reading) : notReadWhole(name, text, reading);
}

}  // namespace

Doubt doubtOfDate(std::string_view name, std::string_view text) {
  MSPCDateComponents record;
  const MSPCUnitFlags units = scanUsualDateTime(record, text).value_or(0);
  const bool hasOffset = (units & kMSPCTimeZoneUnits) != 0;
  if (hasOffset && isInCalendar(record)) return std::nullopt;
  if (hasOffset) return notInCalendar(name, text, MSPIUtilities::kvdxToMspdiDateTime(text));
  if ((units & kMSPCHour) != 0) return fmt::format("{} '{}' has no offset, UTC is taken", name, text);
  return notReadWhole(name, text, MSPIUtilities::kvdxToMspdiDateTime(text));
}

Doubt doubtOfLocalDate(std::string_view name, std::string_view text) {
  MSPCDateComponents record;
  const MSPCUnitFlags units = scanUsualDateTime(record, text).value_or(0);
  return doubtOfReading(name, text, (units & kMSPCHour) != 0, record);
}

Doubt doubtOfDay(std::string_view name, std::string_view text) {
  MSPCDateComponents record;
  return doubtOfReading(name, text, scanUsualDateTime(record, text).has_value(), record);
}

Doubt doubtOfNumber(std::string_view name, std::string_view text) {
  if (isPlainNumber(text)) return std::nullopt;
  const auto number = platform::scanDouble(text);
  if (!number) return fmt::format("{} '{}' is no number, 0 is written", name, text);
  if (platform::trimmed(text.substr(number->length)).empty()) return std::nullopt;
  return fmt::format("{} '{}' is read as far as it is a number: {}", name, text, number->value);
}

Doubt doubtOfWholeNumber(std::string_view name, std::string_view text) {
  if (isPlainNumber(text)) return std::nullopt;
  const std::int64_t whole = platform::integerValue(text);
  if (static_cast<double>(whole) == platform::doubleValue(text)) return doubtOfNumber(name, text);
  return fmt::format("{} '{}' is read as far as it is a whole number: {}", name, text, whole);
}

Doubt doubtOfCopiedNumber(std::string_view name, std::string_view text) {
  const auto number = platform::scanDouble(text);
  if (text.empty() || (number && number->length == text.size())) return std::nullopt;
  return fmt::format("{} '{}' is no number, and is written as it is", name, text);
}

Doubt doubtOfSize(std::string_view name, std::string_view text, double seconds) {
  constexpr double kMost = std::numeric_limits<std::int32_t>::max();
  if (seconds <= kMost) return std::nullopt;
  return fmt::format("{} '{}' is more than a duration can be, {} is written", name, text,
                     MSPIUtilities::mppToMspdiDuration(kMost));
}

Doubt doubtOfTruth(std::string_view name, std::string_view text, bool otherwise) {
  XQueryError error;
  static_cast<void>(boolFromString(text, &error));
  if (!error) return std::nullopt;
  return fmt::format("{} '{}' is neither true nor false, it counts as {}", name, text, otherwise);
}

}  // namespace conform
