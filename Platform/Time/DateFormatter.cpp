#include "Platform/Time/DateFormatter.h"

#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include <string>

#include "Platform/Text/Texts.h"
#include "Platform/Time/GregorianCalendar.h"

namespace platform {
namespace {

icu::UnicodeString wide(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

/// The component that a pattern's letter stands for; none for any other letter.
std::int64_t* componentOf(CivilTime& civil, char letter) {
  switch (letter) {
    case 'y':
      return &civil.year;
    case 'M':
      return &civil.month;
    case 'd':
      return &civil.day;
    case 'H':
      return &civil.hour;
    case 'm':
      return &civil.minute;
    case 's':
      return &civil.second;
    default:
      return nullptr;
  }
}

/// A text in which every component but the year has its smallest value, and the seconds that this took away.
struct Tamed {
  std::string text;
  std::int64_t seconds;
};

/// For texts that the library refuses, such as hour 25 (others, such as 30 February, it rolls over itself). Gives a
/// text that it accepts, and the difference in seconds: "2026-02-10 25:00:00" gives "2026-01-01 00:00:00" and 40 days
/// and 25 hours. None when the text does not match the pattern.
std::optional<Tamed> tamed(std::string_view pattern, std::string_view text) {
  CivilTime civil;
  CivilTime first;
  std::string result;
  while (!pattern.empty() && pattern[0] != 'Z') {
    const char letter = pattern[0];
    if (letter == '\'') {
      pattern.remove_prefix(1);
      continue;
    }
    std::int64_t* component = componentOf(civil, letter);
    if (component == nullptr) {
      if (!text.starts_with(letter)) return std::nullopt;
      text.remove_prefix(1);
      pattern.remove_prefix(1);
      result += letter;
      continue;
    }
    pattern.remove_prefix(std::min(pattern.find_first_not_of(letter), pattern.size()));
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    if (digits == 0) return std::nullopt;
    *component = integerValue(text.substr(0, digits));
    if (letter == 'y') first.year = civil.year;
    result += letter == 'y' ? text.substr(0, digits) : letter == 'M' || letter == 'd' ? "01" : "00";
    text.remove_prefix(digits);
  }
  return Tamed{result.append(text),
               GregorianCalendar::secondsFromCivil(civil) - GregorianCalendar::secondsFromCivil(first)};
}

}  // namespace

/// The library only ever gets a fixed offset, since its own zone data may be older than the system's.
struct DateFormatter::Format {
  UErrorCode status = U_ZERO_ERROR;
  std::string_view pattern;
  icu::SimpleDateFormat icu;
  const TimeZone& zone;

  Format(std::string_view datePattern, const TimeZone& shownZone)
      : pattern(datePattern), icu(wide(datePattern), icu::Locale::getRoot(), status), zone(shownZone) {
    // Strict about the text's form, lenient about its values: 30 February rolls over, as it does everywhere in the
    // program.
    icu.setLenient(false);
    icu.setCalendarLenient(true);
  }

  [[nodiscard]] bool hasOffset() const { return pattern.find('Z') != std::string_view::npos; }

  void setOffset(std::int64_t seconds) {
    icu.setTimeZone(icu::SimpleTimeZone(static_cast<std::int32_t>(seconds * 1000), ""));
  }

  /// Seconds since 1970: of the instant when the text has an offset, otherwise of the clock reading. None unless the
  /// whole text matches.
  std::optional<double> read(std::string_view text) {
    setOffset(0);
    const icu::UnicodeString source = wide(text);
    icu::ParsePosition position(0);
    const double milliseconds = icu.parse(source, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != source.length() || source.isEmpty()) {
      return std::nullopt;
    }
    return milliseconds / 1000.0;
  }
};

DateFormatter::DateFormatter(std::string_view pattern, const TimeZone& zone)
    : format_(std::make_unique<Format>(pattern, zone)) {}

DateFormatter::~DateFormatter() = default;

std::string DateFormatter::format(Instant instant) const {
  format_->setOffset(format_->zone.secondsFromGMT(instant));
  icu::UnicodeString text;
  format_->icu.format(instant.seconds * 1000.0, text);
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::optional<Instant> DateFormatter::parseWhole(std::string_view text) const {
  auto seconds = format_->read(text);
  if (!seconds) {
    const auto other = tamed(format_->pattern, text);
    if (other) seconds = format_->read(other->text);
    if (seconds) *seconds += static_cast<double>(other->seconds);
  }
  if (!seconds) return std::nullopt;
  if (format_->hasOffset()) return Instant{*seconds};
  return format_->zone.instantFromCivilSeconds(truncated<std::int64_t>(*seconds));
}

}  // namespace platform
