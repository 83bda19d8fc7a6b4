#include "Platform/Time/TimeZone.h"

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "Platform/System/Exceptions.h"
#include "Platform/System/FileReading.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"
#include "Platform/Text/RegularExpression.h"
#include "Platform/Text/Texts.h"

namespace platform {
namespace {

constexpr std::int64_t kBlock = 64 * kSecondsPerDay;
constexpr std::int64_t kSecondsPerEra = 146097 * kSecondsPerDay;  // 400 Gregorian years: weekdays and rules repeat
constexpr std::int64_t kFirstRuleSecond = -5'364'662'400;  // the year 1800, before every zone's first clock change
constexpr std::int64_t kLastRuleSecond = 16'725'225'600;   // the year 2500, when every zone follows its last rule
constexpr std::uint64_t kLargestZoneFile = 1 << 20;        // real ones have a few thousand bytes
constexpr const char* kHostZoneFile = "/etc/localtime";

/// An instant with the same offset within the years 1800 to 2500. The C library counts years in 32 bits, so it must not
/// get a broken document's year 999999999.
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

/// Makes the C library use another zone while this object lives. The library knows only one at a time, the one in TZ.
class ScopedZone {
 public:
  explicit ScopedZone(const std::string& tz) {
    if (const char* before = std::getenv("TZ")) before_ = before;
    if (before_ != tz) ::setenv("TZ", tz.c_str(), 1);
    ::tzset();
  }
  ~ScopedZone() {
    if (before_) {
      ::setenv("TZ", before_->c_str(), 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }
  ScopedZone(const ScopedZone&) = delete;
  ScopedZone& operator=(const ScopedZone&) = delete;

 private:
  std::optional<std::string> before_;
};

/// What the C library shows for the beginning of 1970 in the zone of TZ.
struct Shown {
  std::string abbreviation;
  std::int64_t offset = 0;
};

Shown shownInZoneOfTZ() {
  const time_t time = 0;
  tm clock{};
  ::localtime_r(&time, &clock);
  return {clock.tm_zone, clock.tm_gmtoff};
}

/// The zone's name without the folder of its file, and without "posix/" or "right/", the folders with copies of the
/// zone database.
std::string_view shortName(std::string_view name) {
  for (const std::string_view folder : {"/zoneinfo/", "posix/", "right/"}) {
    if (const auto at = name.find(folder); at != std::string_view::npos) name.remove_prefix(at + folder.size());
  }
  return name;
}

std::string hostZoneName() {
  const std::unique_ptr<char, decltype(&std::free)> file(::realpath(kHostZoneFile, nullptr), &std::free);
  return file ? std::string(shortName(file.get())) : "UTC";
}

/// The path at which the C library looks for the zone file.
std::string zoneFilePath(const std::string& name) {
  if (name.starts_with('/')) return name;
  const char* folder = std::getenv("TZDIR");
  return appendPathComponent(folder == nullptr || *folder == '\0' ? "/usr/share/zoneinfo" : folder, name);
}

/// The zone file of this name; empty when there is none. If the C library finds another kind of file, it takes the name
/// for a rule.
std::string zoneFile(const std::string& name) {
  std::string bytes = readFile(zoneFilePath(name), kLargestZoneFile).value_or("");
  return bytes.starts_with("TZif") ? bytes : "";
}

/// Whether the text is a POSIX rule: a name and an offset, perhaps followed by those of daylight-saving time and the
/// dates at which it begins and ends: "JST-9", "EST5EDT,M3.2.0,M11.1.0". The C library takes any other text for UTC.
bool isPosixRule(const std::string& text) {
  static const PosixRegularExpression form(
      "^([A-Za-z]{3,}|<[A-Za-z0-9+-]{3,}>)[+-]?[0-9]{1,2}(:[0-9]{1,2}){0,2}"
      "(([A-Za-z]{3,}|<[A-Za-z0-9+-]{3,}>)([+-]?[0-9]{1,2}(:[0-9]{1,2}){0,2})?"
      "(,(M[0-9]{1,2}\\.[1-5]\\.[0-6]|J?[0-9]{1,3})(/[+-]?[0-9]{1,3}(:[0-9]{1,2}){0,2})?){0,2})?$");
  return !form.match(text).empty();
}

/// The value of TZ, or the host's setting. An empty TZ means UTC.
std::string systemZoneName() {
  const char* environment = std::getenv("TZ");
  if (environment == nullptr) return kHostZoneFile;
  return *environment == '\0' ? "UTC" : environment;
}

std::unique_ptr<TimeZone>& systemZone() {
  static std::unique_ptr<TimeZone> zone;
  return zone;
}

}  // namespace

const TimeZone& TimeZone::system() {
  auto& zone = systemZone();
  if (!zone) {
    const std::string name = systemZoneName();
    zone = std::make_unique<TimeZone>(name);
    if (!zone->isKnown()) log("WARNING: Unknown time zone '{}'. UTC is used instead.", name);
  }
  return *zone;
}

const TimeZone& TimeZone::utc() {
  static const TimeZone zone("UTC");
  return zone;
}

void TimeZone::setSystem(const std::string& name) {
  ::setenv("TZ", name.c_str(), 1);
  ::tzset();
  systemZone().reset();
}

std::vector<std::string> TimeZone::names() {
  std::vector<std::string> names;
  const std::string table = readFile(zoneFilePath("zone1970.tab"), kLargestZoneFile).value_or("");
  for (const std::string_view line : splitAtNewlines(table)) {
    // A line has countries, coordinates, name, and perhaps a remark, separated by tabs.
    const std::size_t nameAt = line.find('\t', line.find('\t') + 1) + 1;
    if (line.starts_with('#') || nameAt == 0) continue;
    const std::string_view name = line.substr(nameAt);
    names.emplace_back(name.substr(0, name.find('\t')));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void TimeZone::resetSystemForTesting() { systemZone().reset(); }

TimeZone::TimeZone(const std::string& name) : tz_(name.starts_with(':') ? name.substr(1) : name) {
  const bool isHost = tz_ == kHostZoneFile;  // without that file, the machine's zone is UTC
  file_ = zoneFile(tz_);
  isFound_ = !file_.empty() || tz_ == "UTC" || isPosixRule(tz_);
  isKnown_ = isHost || isFound_;
  if (!isKnown_) tz_ = "UTC";
  name_ = isHost ? hostZoneName() : std::string(shortName(tz_));
}

TimeZone::Span TimeZone::spanAt(std::int64_t utcSeconds) const {
  const std::int64_t folded = foldedIntoRules(utcSeconds);
  for (const Span& span : lastSpans_) {
    if (span.from <= utcSeconds && utcSeconds < span.to) return span;
  }
  const auto number = static_cast<std::size_t>((folded - kFirstRuleSecond) / kBlock);
  auto [block, isNew] = blocks_.try_emplace(number);
  if (isNew) block->second = spansFrom(kFirstRuleSecond + static_cast<std::int64_t>(number) * kBlock);
  Span span = *std::find_if(block->second.begin(), block->second.end(),
                            [folded](const Span& candidate) { return folded < candidate.to; });
  span.from += utcSeconds - folded;
  span.to += utcSeconds - folded;
  lastSpans_ = {span, lastSpans_[0]};
  return span;
}

/// The C library uses UTC without a word when it cannot read the file, for example because too many files are open.
void TimeZone::requireFile() const {
  if (file_.empty()) return;
  const Shown shown = shownInZoneOfTZ();
  bool isUsed = !shown.abbreviation.empty() && file_.find(shown.abbreviation + '\0') != std::string::npos;
  if (isUsed && !isCompared_ && tz_.starts_with(shown.abbreviation)) {
    // The library takes the letters of a name that it cannot load for the abbreviation: "CET". A path has none.
    const ScopedZone byPath(zoneFilePath(tz_));
    const Shown expected = shownInZoneOfTZ();
    isUsed = !expected.abbreviation.empty() && expected.offset == shown.offset;
    isCompared_ = isUsed;
  }
  require(isUsed, "The data of the time zone {} could not be read.", name_);
}

/// The offset at an instant in the zone that is set at the moment, from the C library.
TimeZone::Span TimeZone::readingAt(std::int64_t utcSeconds) {
  const time_t time = utcSeconds;
  tm clock{};
  ::localtime_r(&time, &clock);
  return {utcSeconds, utcSeconds, clock.tm_gmtoff, clock.tm_isdst > 0};
}

/// The spans of a block. Compares the offsets at the ends of each day, and where they differ, finds the change by
/// bisection.
std::vector<TimeZone::Span> TimeZone::spansFrom(std::int64_t blockStart) const {
  const ScopedZone zone(tz_);
  requireFile();
  const auto isSame = [](const Span& a, const Span& b) {
    return a.offset == b.offset && a.isDaylightSaving == b.isDaylightSaving;
  };
  std::vector<Span> spans = {readingAt(blockStart)};
  for (std::int64_t day = blockStart; day < blockStart + kBlock; day += kSecondsPerDay) {
    const Span next = readingAt(day + kSecondsPerDay);
    if (isSame(spans.back(), next)) continue;
    std::int64_t before = day;
    std::int64_t after = day + kSecondsPerDay;
    while (after - before > 1) {
      const std::int64_t middle = before + (after - before) / 2;
      (isSame(readingAt(middle), spans.back()) ? before : after) = middle;
    }
    spans.back().to = after;
    spans.push_back({after, after, next.offset, next.isDaylightSaving});
  }
  spans.back().to = blockStart + kBlock;
  return spans;
}

std::int64_t TimeZone::secondsFromGMT(Instant instant) const { return spanAt(wholeSeconds(instant)).offset; }

std::int64_t TimeZone::secondsFromGMTOnce(Instant instant) const {
  const ScopedZone zone(tz_);
  requireFile();
  return readingAt(foldedIntoRules(wholeSeconds(instant))).offset;
}

bool TimeZone::isDaylightSavingTime(Instant instant) const { return spanAt(wholeSeconds(instant)).isDaylightSaving; }

std::int64_t TimeZone::daylightSavingOffset(Instant instant) const {
  const Span span = spanAt(wholeSeconds(instant));
  if (!span.isDaylightSaving) return 0;
  std::optional<std::int64_t> share;
  for (const bool isForward : {false, true}) {
    const auto standard = standardOffset(span, isForward);
    if (standard && (!share || std::abs(span.offset - *standard) < std::abs(*share))) share = span.offset - *standard;
  }
  return share.value_or(0);
}

std::optional<std::int64_t> TimeZone::standardOffset(Span span, bool isForward) const {
  // Double summer time is surrounded by summer time, so the nearest standard time may be several changes away.
  constexpr int kMostSpans = 64;  // at least ten years
  for (int i = 0; i < kMostSpans && span.isDaylightSaving; ++i) span = spanAt(isForward ? span.to : span.from - 1);
  return span.isDaylightSaving ? std::nullopt : std::optional(span.offset);
}

std::int64_t TimeZone::utcFromCivilSeconds(std::int64_t civilSeconds) const {
  // Offsets are smaller than a day, so only spans between the day before and the day after can show this reading.
  std::optional<std::int64_t> latest;
  std::int64_t offsetBefore = 0;
  for (Span span = spanAt(civilSeconds - kSecondsPerDay);; span = spanAt(span.to)) {
    const std::int64_t utc = civilSeconds - span.offset;
    if (span.from <= utc && utc < span.to) latest = utc;
    if (utc >= span.to || span.from <= civilSeconds - kSecondsPerDay) offsetBefore = span.offset;
    if (civilSeconds + kSecondsPerDay < span.to) break;
  }
  return latest.value_or(civilSeconds - offsetBefore);
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
  return {static_cast<double>(utcFromCivilSeconds(civil - GregorianCalendar::secondOfDay(civil) + kSecondsPerDay - 1))};
}

int TimeZone::weekday(Instant instant) const { return GregorianCalendar::weekday(civilSecondsFromInstant(instant)); }

}  // namespace platform
