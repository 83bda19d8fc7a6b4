#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

#include "Fuzz/Check.h"
#include "KVMSPCommon/MSPCDateTimeConverter.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/TimeZone.h"

/// The result of an operation, or the reason of the exception that it raised.
template <typename Operation>
std::string fuzzOutcome(Operation operation) {
  try {
    return operation();
  } catch (const platform::Exception& exception) {
    return "raises " + exception.reason();
  }
}

/// Zones with offsets of whole, half and quarter hours in both hemispheres, and one that changed its clocks at
/// midnight.
inline constexpr std::array<const char*, 6> kFuzzZones = {
    "UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "America/Sao_Paulo"};

inline void setFuzzZone(const char* zone) {
  const char* environment = std::getenv("TZ");
  if (environment != nullptr && std::string_view(environment) == zone) return;
  setenv("TZ", zone, 1);
  tzset();
  platform::TimeZone::resetSystemForTesting();
  MSPIUtilities::forgetConversionsForTesting();
}

/// Checks that the fast path for a date-time and the general expressions give the same units, record and failure,
/// whatever the record contained before.
inline void checkScan(std::string_view text) {
  const auto read = [text](auto parse) {
    MSPCDateComponents record;
    record.year = 1987;
    record.setIsUTC(false);
    record.setTimeZoneHour(-3);
    record.setTimeZoneMinute(17);
    return fuzzOutcome([&] { return fmt::format("{:x} {}", parse(record, text), record.description()); });
  };
  const std::string scanned = read(&MSPIUtilities::updateDateTimeComponentsFromISODateTime);
  const std::string general = read(&MSPIUtilities::updateDateTimeComponentsByExpression);
  check(scanned == general, "scan: " + scanned + "\nexpression: " + general);
}

/// Checks that printing an instant and reading it back gives the same instant. Skips offsets that do not survive this:
/// those with seconds, and negative ones with minutes.
inline void checkInstant(double seconds) {
  const platform::Instant instant{std::trunc(seconds)};
  const std::int64_t offset = platform::TimeZone::system().secondsFromGMT(instant);
  if (offset % 60 != 0 || (offset < 0 && offset % 3600 != 0)) return;
  if (std::abs(seconds) > 6e10) return;  // the text of such years cannot be read back
  if (seconds < -6e10 / 2) return;
  const auto text = MSPIUtilities::mppToKvdxDateTime(instant);
  const auto back = MSPIUtilities::kvdxToMppDateTime(*text);
  check(back && back->seconds == instant.seconds, fmt::format("{} is read back from {}", instant.seconds, *text));
}

inline void checkNumbers(std::string_view text) {
  if (const auto whole = platform::scanInteger(text)) check(whole->length <= text.size(), "integer inside the text");
  if (const auto decimal = platform::scanDouble(text)) check(decimal->length <= text.size(), "decimal inside the text");
  const double number = platform::doubleValue(text);
  static_cast<void>(MSPIUtilities::mppToKvdxDuration(number));
  static_cast<void>(MSPIUtilities::mppToMspdiDuration(number));
  static_cast<void>(MSPIUtilities::hourMinSecFromDuration(number));
  static_cast<void>(MSPIUtilities::mppToMspdiDateTime(platform::Instant{number}));
  checkInstant(number);

  const std::int64_t seconds = platform::integerValue(text);
  const auto duration = MSPIUtilities::kvdxToMspdiDuration(text);
  if (seconds >= 0) check(MSPIUtilities::mspdiToKvdxDuration(*duration) == std::to_string(seconds), *duration);
}

template <typename Operation>
void callAny(Operation operation) {
  static_cast<void>(fuzzOutcome([&] {
    static_cast<void>(operation());
    return std::string();
  }));
}

inline void callDurations(std::string_view text) {
  using U = MSPIUtilities;
  callAny([&] { return U::mspdiDurationInSecs(text); });
  callAny([&] { return U::mspdiToKvdxDuration(text); });
  callAny([&] { return U::mspdiToMppDuration(text); });
  callAny([&] { return U::mspdiToKvdxTimeOnly(text); });
}

inline void callConversions(std::string_view text) {
  using U = MSPIUtilities;
  callAny([&] { return U::isKvdxDateTime(text) && U::isMspdiDateTime(text); });
  callAny([&] { return U::mspdiToKvdxDateTime(text); });
  callAny([&] { return U::mspdiDateTimeToString(text); });
  callAny([&] { return U::mspdiToMppDateTime(text); });
  callAny([&] { return U::kvdxToMppDateTime(text); });
  callAny([&] { return U::kvdxToMspdiDateTime(text); });
}

inline void callWithAnother(std::string_view text, std::string_view other) {
  using U = MSPIUtilities;
  callAny([&] {
    check(U::compareMspdiDateTime(text, text) == 0, "a text is equal to itself");
    check(U::compareMspdiDateTime(text, other) == -U::compareMspdiDateTime(other, text), "swapping reverses the order");
    return 0;
  });
  callAny([&] { return U::isWorkingDay(text, nullptr); });
  // An advance takes a step for each day, up to about 10,000 years. This is correct, but too slow to try often.
  constexpr std::int64_t kLongest = 1'000'000'000;
  const std::int64_t seconds = platform::integerValue(other);
  if (seconds >= kLongest || seconds <= -kLongest) return;
  callAny([&] { return U::isoDateTime(text, other, true, nullptr); });
  callAny([&] { return U::isoDateTime(text, other, false, nullptr); });
}

/// Calls the converter by date patterns. Skips texts of several lines, for which it ends the process on purpose.
inline void callConverter(std::string_view text) {
  using C = MSPCDateTimeConverter;
  if (platform::splitAtNewlines(text).size() > 1) return;
  for (const auto instant :
       {C::mppFromMspdiDateTime(text), C::mppFromKvdxDateTime(text), C::mppFromKvdxDateOnly(text)}) {
    if (!instant) continue;
    static_cast<void>(C::mspdiFromMppDateTime(*instant));
    static_cast<void>(C::kvdxFromMppDateTime(*instant));
    static_cast<void>(C::kvdxFromMppDateTime(*instant, true));
    checkInstant(instant->seconds);
  }
}

/// The first bytes of the input choose a zone and the functions to call; then come a text and, after a bar, another
/// text. Only some functions are called for each input, because most conversions compile expressions, which takes far
/// longer than anything else.
inline void fuzzDateTime(std::string_view input) {
  if (input.empty()) return;
  const auto choice = static_cast<unsigned char>(input[0]);
  setFuzzZone(kFuzzZones[choice % kFuzzZones.size()]);
  const std::string_view texts = input.substr(1);
  const std::size_t bar = std::min(texts.find('|'), texts.size());
  const std::string_view text = texts.substr(0, bar);
  const std::string_view other = bar < texts.size() ? texts.substr(bar + 1) : std::string_view();
  checkScan(text);
  checkNumbers(text);
  switch (choice / kFuzzZones.size() % 4) {
    case 0:
      return callDurations(text);
    case 1:
      return callConversions(text);
    case 2:
      return callWithAnother(text, other);
    default:
      return callConverter(text);
  }
}
