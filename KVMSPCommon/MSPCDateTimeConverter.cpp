#include "KVMSPCommon/MSPCDateTimeConverter.h"

#include "Platform/System/Exceptions.h"
#include "Platform/System/Log.h"
#include "Platform/Text/RegularExpression.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/DateFormatter.h"
#include "Platform/Time/TimeZone.h"

using platform::DateFormatter;
using platform::Instant;
using platform::MatchRange;
using platform::requireOrEndProcess;
using platform::UnicodeRegularExpression;

namespace {

constexpr std::string_view kDatePattern = "yyyy-MM-dd";
constexpr std::string_view kDateTimePattern = "yyyy-MM-dd'T'HH:mm:ss";
constexpr std::string_view kDateTimeZonePattern = "yyyy-MM-dd'T'HH:mm:ssZ";
constexpr std::string_view kZoneExpression = R"([\+\-]{1}[:digit:]{2}(:[:digit:]{2}){0,2}$)";
constexpr std::string_view kCompactZoneExpression = R"([\+\-]{1}[:digit:]{4,6}$)";

DateFormatter formatter(std::string_view pattern, bool forceUTC = false) {
  return {pattern, forceUTC ? platform::TimeZone::utc() : platform::TimeZone::system()};
}

bool hasTime(std::string_view text) { return text.find('T') != std::string_view::npos; }

}  // namespace

void MSPCDateTimeConverter::initialize() {
  static const bool done = [] {
    platform::log("Running in {}", platform::TimeZone::system().name());
    return true;
  }();
  static_cast<void>(done);
}

// To instants.

std::optional<Instant> MSPCDateTimeConverter::mppFromMspdiDateOnly(std::string_view mspdi) {
  initialize();
  return formatter(kDatePattern).parseWhole(platform::trimmed(mspdi));
}

std::optional<Instant> MSPCDateTimeConverter::mppFromMspdiDateTime(std::string_view mspdi) {
  initialize();
  if (!hasTime(mspdi)) return mppFromMspdiDateOnly(mspdi);
  return formatter(kDateTimePattern).parseWhole(platform::trimmed(mspdi));
}

std::optional<Instant> MSPCDateTimeConverter::mppFromKvdxDateOnly(std::string_view kvdx) {
  return mppFromMspdiDateOnly(kvdx);
}

std::optional<Instant> MSPCDateTimeConverter::mppFromKvdxDateTime(std::string_view kvdx) {
  initialize();
  static const UnicodeRegularExpression zoneExpression(kZoneExpression);
  std::string text(platform::trimmed(kvdx));
  if (text.empty()) return std::nullopt;
  if (!hasTime(text)) return mppFromKvdxDateOnly(text);
  if (text.ends_with('Z')) {
    text.replace(text.size() - 1, 1, "+00");
  } else if (const auto matches = zoneExpression.matches(text); !matches.empty()) {
    requireOrEndProcess(matches.size() == 1, "[matches count] == 1");
    std::string zone(matches[0].in(text));
    std::erase(zone, ':');
    text.replace(matches[0].start, matches[0].length, zone);
  }
  return formatter(kDateTimeZonePattern).parseWhole(text);
}

// To MSPDI.

std::string MSPCDateTimeConverter::mspdiFromMppDateTime(Instant mpp) {
  initialize();
  return formatter(kDateTimePattern).format(mpp);
}

std::string MSPCDateTimeConverter::mspdiFromMppDateOnly(Instant mpp) {
  initialize();
  return formatter(kDatePattern).format(mpp);
}

std::optional<std::string> MSPCDateTimeConverter::mspdiFromKvdxDateTime(std::string_view kvdx) {
  const auto mpp = mppFromKvdxDateTime(kvdx);
  if (!mpp) return std::nullopt;
  return mspdiFromMppDateTime(*mpp);
}

std::optional<std::string> MSPCDateTimeConverter::mspdiFromKvdxDateOnly(std::string_view kvdx) {
  const auto mpp = mppFromKvdxDateOnly(kvdx);
  if (!mpp) return std::nullopt;
  return mspdiFromMppDateOnly(*mpp);
}

// To kvdx.

std::string MSPCDateTimeConverter::kvdxFromMppDateTime(Instant mpp, bool forceUTC) {
  initialize();
  return ensureISOTimeZoneFormat(formatter(kDateTimeZonePattern, forceUTC).format(mpp), forceUTC);
}

std::string MSPCDateTimeConverter::kvdxFromMppDateOnly(Instant mpp, bool forceUTC) {
  initialize();
  const std::string text = formatter(kDatePattern, forceUTC).format(mpp);
  return text.substr(0, text.find('T'));
}

std::optional<std::string> MSPCDateTimeConverter::kvdxFromMspdiDateTime(std::string_view mspdi, bool forceUTC) {
  const auto mpp = mppFromMspdiDateTime(mspdi);
  if (!mpp) return std::nullopt;
  return kvdxFromMppDateTime(*mpp, forceUTC);
}

std::optional<std::string> MSPCDateTimeConverter::kvdxFromMspdiDateOnly(std::string_view mspdi, bool forceUTC) {
  const auto mpp = mppFromMspdiDateOnly(mspdi);
  if (!mpp) return std::nullopt;
  return kvdxFromMppDateOnly(*mpp, forceUTC);
}

std::string MSPCDateTimeConverter::ensureISOTimeZoneFormat(std::string_view text, bool forceUTC) {
  initialize();
  static const UnicodeRegularExpression compactZoneExpression(kCompactZoneExpression);
  const std::string trimmed(platform::trimmed(text));
  platform::require(!trimmed.empty(), "No date string specified.");
  const auto matches = compactZoneExpression.matches(trimmed);
  if (matches.empty()) return trimmed + (hasTime(trimmed) ? "Z" : "T00:00:00Z");
  requireOrEndProcess(matches.size() == 1, "[matches count] == 1");

  const MatchRange zone = matches[0];
  if (forceUTC) return trimmed.substr(0, zone.start) + "Z" + trimmed.substr(zone.end());
  const std::string_view digits = std::string_view(trimmed).substr(zone.start + 1, zone.length - 1);
  const auto pair = [digits](std::size_t at) { return at + 2 <= digits.size() ? digits.substr(at, 2) : "00"; };
  return fmt::format("{}{}:{}:{}", trimmed.substr(0, zone.start + 1), pair(0), pair(2), pair(4));
}
