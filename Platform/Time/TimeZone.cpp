#include "Platform/Time/TimeZone.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>

#include "Platform/System/Log.h"
#include "Platform/Text/RegularExpression.h"

namespace platform {
namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kSecondsPerEra = 146097 * kDay;     // 400 Gregorian years: weekdays and rules repeat
constexpr std::int64_t kFirstRuleSecond = -5'364'662'400;  // 1800: before every zone's first clock change
constexpr std::int64_t kLastRuleSecond = 16'725'225'600;   // 2500: every zone follows its last rule by then

/// An instant within the years 1800 to 2500 with the same offset. Keeps broken documents' year 999999999
/// away from the library and the number of spans small.
std::int64_t foldedIntoRules(std::int64_t utcSeconds) {
  if (utcSeconds < kFirstRuleSecond) return kFirstRuleSecond;
  if (utcSeconds >= kLastRuleSecond) {
    return kLastRuleSecond - kSecondsPerEra + (utcSeconds - kLastRuleSecond) % kSecondsPerEra;
  }
  return utcSeconds;
}

std::int64_t wholeSeconds(Instant instant) {
  constexpr double kLimit = 1e18;
  return static_cast<std::int64_t>(std::floor(std::clamp(instant.seconds, -kLimit, kLimit)));
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

bool isHostZoneFile(std::string_view name) { return name == "/etc/localtime" || name == ":/etc/localtime"; }

/// A POSIX zone of a fixed offset, "JST-9" or "<+03>-3", by the name that the library has for it ("GMT+09:00"; POSIX
/// counts west of Greenwich). None for anything else.
std::optional<std::string> fixedOffsetName(const std::string& name) {
  const PosixRegularExpression form("^([A-Za-z]{3,}|<[A-Za-z0-9+-]+>)([+-]?)([0-9]{1,2})(:([0-9][0-9]))?$");
  const auto groups = form.match(name);
  if (groups.empty()) return std::nullopt;
  const std::string_view minutes = groups[5].present() ? groups[5].in(name) : "00";
  return fmt::format("GMT{}{:0>2}:{}", groups[2].in(name) == "-" ? '+' : '-', groups[3].in(name), minutes);
}

/// The name of the machine's zone: TZ as it is commonly written (a name, ":name", a path into the zone database, a
/// fixed offset), or what the host is set to. An empty TZ is UTC, as for the C library.
std::string systemZoneName() {
  if (const char* environment = std::getenv("TZ"); environment != nullptr && !isHostZoneFile(environment)) {
    std::string_view name(environment);
    if (name.starts_with(':')) name.remove_prefix(1);
    for (const std::string_view folder : {"/zoneinfo/", "posix/", "right/"}) {
      if (const auto at = name.find(folder); at != std::string_view::npos) name.remove_prefix(at + folder.size());
    }
    if (name.empty()) return "UTC";
    return fixedOffsetName(std::string(name)).value_or(std::string(name));
  }
  const std::unique_ptr<icu::TimeZone> host(icu::TimeZone::detectHostTimeZone());
  icu::UnicodeString id;
  return host ? utf8(host->getID(id)) : "UTC";
}

std::unique_ptr<TimeZone>& systemZone() {
  static std::unique_ptr<TimeZone> zone;
  return zone;
}

}  // namespace

struct TimeZone::Rules {
  bool known = true;
  std::unique_ptr<icu::BasicTimeZone> zone;

  explicit Rules(const std::string& name) {
    std::unique_ptr<icu::TimeZone> found(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
    if (*found == icu::TimeZone::getUnknown()) {
      known = false;
      found.reset(icu::TimeZone::createTimeZone("UTC"));
    }
    // Every zone that createTimeZone makes is a BasicTimeZone.
    zone.reset(static_cast<icu::BasicTimeZone*>(found.release()));
  }

  [[nodiscard]] Span spanAt(std::int64_t utcSeconds) const {
    const double milliseconds = static_cast<double>(utcSeconds) * 1000.0;
    std::int32_t raw = 0;
    std::int32_t daylight = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone->getOffset(milliseconds, false, raw, daylight, status);
    Span span{std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
              (raw + daylight) / 1000, daylight / 1000};
    icu::TimeZoneTransition change;
    if (zone->getPreviousTransition(milliseconds, true, change)) {
      span.from = static_cast<std::int64_t>(change.getTime() / 1000.0);
    }
    if (zone->getNextTransition(milliseconds, false, change)) {
      span.to = static_cast<std::int64_t>(change.getTime() / 1000.0);
    }
    return span;
  }
};

const TimeZone& TimeZone::system() {
  auto& zone = systemZone();
  if (!zone) {
    const std::string name = systemZoneName();
    zone = std::make_unique<TimeZone>(name);
    if (!zone->isKnown()) log("WARNING: Unknown time zone '{}'. UTC is used instead.", name);
  }
  return *zone;
}

void TimeZone::resetSystemForTesting() { systemZone().reset(); }

TimeZone::TimeZone(const std::string& name) : name_(name), rules_(std::make_unique<Rules>(name)) {
  if (!rules_->known) name_ = "UTC";
}

TimeZone::~TimeZone() = default;

bool TimeZone::isKnown() const { return rules_->known; }

const TimeZone::Span& TimeZone::spanAt(std::int64_t utcSeconds) const {
  const std::int64_t folded = foldedIntoRules(utcSeconds);
  for (const std::size_t last : lastSpans_) {
    if (last < spans_.size() && spans_[last].from <= folded && folded < spans_[last].to) return spans_[last];
  }
  auto next = std::upper_bound(spans_.begin(), spans_.end(), folded,
                               [](std::int64_t seconds, const Span& span) { return seconds < span.from; });
  if (next == spans_.begin() || folded >= std::prev(next)->to) next = spans_.insert(next, rules_->spanAt(folded)) + 1;
  lastSpans_ = {static_cast<std::size_t>(next - spans_.begin()) - 1, lastSpans_[0]};
  return spans_[lastSpans_[0]];
}

std::int64_t TimeZone::secondsFromGMT(Instant instant) const { return spanAt(wholeSeconds(instant)).offset; }

std::int64_t TimeZone::daylightSavingOffset(Instant instant) const { return spanAt(wholeSeconds(instant)).daylight; }

std::int64_t TimeZone::utcFromCivilSeconds(std::int64_t civilSeconds) const {
  // The offsets a day before and a day after surround at most one change that matters to this clock reading.
  const Span& spanBefore = spanAt(civilSeconds - kDay);
  const std::int64_t before = spanBefore.offset;
  if (civilSeconds + kDay < spanBefore.to) return civilSeconds - before;  // nearly always
  const std::int64_t after = spanAt(civilSeconds + kDay).offset;
  if (before == after) {
    // A change there and back within two days is looked at once more below.
    const std::int64_t utc = civilSeconds - before;
    if (spanAt(utc).offset == before) return utc;
  }
  const std::int64_t later = civilSeconds - std::min(before, after);
  const std::int64_t earlier = civilSeconds - std::max(before, after);
  // A reading is real when the zone has, at the instant it stands for, the offset it was made with.
  if (spanAt(later).offset == civilSeconds - later) return later;
  if (spanAt(earlier).offset == civilSeconds - earlier) return earlier;
  return civilSeconds - before;
}

Instant TimeZone::instantFromCivil(const CivilTime& civil) const {
  return instantFromCivilSeconds(GregorianCalendar::secondsFromCivil(civil));
}

Instant TimeZone::instantFromCivilSeconds(std::int64_t civilSeconds) const {
  return {static_cast<double>(utcFromCivilSeconds(civilSeconds))};
}

std::int64_t TimeZone::civilSecondsFromInstant(Instant instant) const {
  const std::int64_t utc = wholeSeconds(instant);
  return utc + spanAt(utc).offset;
}

CivilTime TimeZone::civilFromInstant(Instant instant) const {
  return GregorianCalendar::civilFromSeconds(civilSecondsFromInstant(instant));
}

Instant TimeZone::startOfDay(Instant instant) const {
  const std::int64_t civil = civilSecondsFromInstant(instant);
  return {static_cast<double>(utcFromCivilSeconds(civil - GregorianCalendar::secondOfDay(civil)))};
}

Instant TimeZone::endOfDay(Instant instant) const {
  const std::int64_t civil = civilSecondsFromInstant(instant);
  return {static_cast<double>(utcFromCivilSeconds(civil - GregorianCalendar::secondOfDay(civil) + kDay - 1))};
}

int TimeZone::weekday(Instant instant) const { return GregorianCalendar::weekday(civilSecondsFromInstant(instant)); }

}  // namespace platform
