#include "Conform/FileTexts.h"

#include <algorithm>
#include <array>
#include <span>

#include "Conform/Hours.h"
#include "Platform/Text/Texts.h"
#include "Platform/Time/GregorianCalendar.h"
#include "Platform/Time/Instant.h"

using platform::kSecondsPerDay;
using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;

namespace conform {
namespace {

constexpr std::int64_t kLongest = 1'000'000'000'000'000;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits that the text begins with; none without any, or when there are over fifteen.
std::optional<std::int64_t> takeDigits(std::string_view& text) {
  constexpr std::size_t kMostDigits = 15;
  std::int64_t number = 0;
  std::size_t length = 0;
  for (; length < text.size() && isDigit(text[length]); ++length) {
    if (length == kMostDigits) return std::nullopt;
    number = number * 10 + (text[length] - '0');
  }
  if (length == 0) return std::nullopt;
  text.remove_prefix(length);
  return number;
}

/// Takes numbers with the separator between them, as many as there are places for.
bool takeNumbers(std::string_view& text, char separator, std::span<std::int64_t> numbers) {
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i > 0) {
      if (!text.starts_with(separator)) return false;
      text.remove_prefix(1);
    }
    const auto number = takeDigits(text);
    if (!number) return false;
    numbers[i] = *number;
  }
  return true;
}

std::optional<std::int64_t> takeTimeOfDay(std::string_view& text) {
  std::array<std::int64_t, 2> time{};
  if (!takeNumbers(text, ':', time)) return std::nullopt;
  std::int64_t second = 0;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    const auto digits = takeDigits(text);
    if (!digits) return std::nullopt;
    second = *digits;
  }
  if (time[0] > 24 || time[1] > 59 || second > 59) return std::nullopt;
  const std::int64_t seconds = time[0] * kSecondsPerHour + time[1] * kSecondsPerMinute + second;
  return seconds > kSecondsPerDay ? std::nullopt : std::optional(seconds);
}

std::optional<std::int64_t> secondsOfUnit(char unit, bool isTime) {
  switch (unit) {
    case 'D':
      return kSecondsPerDay;
    case 'H':
      return kSecondsPerHour;
    case 'M':
      return isTime ? std::optional<std::int64_t>(60) : std::nullopt;
    case 'S':
      return 1;
    default:
      return std::nullopt;
  }
}

/// Skips what stands behind the point of a number.
void skipFraction(std::string_view& text) {
  if (!text.starts_with('.')) return;
  text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of("0123456789"), text.size()));
}

}  // namespace

std::optional<std::int64_t> dateTimeSeconds(std::string_view text) {
  text = platform::trimmed(text);
  std::array<std::int64_t, 3> date{};
  if (!takeNumbers(text, '-', date)) return std::nullopt;
  const auto [year, month, day] = date;
  if (year > 999'999'999 || month < 1 || month > 12 || day < 1 || day > 31) return std::nullopt;
  std::int64_t time = 0;
  if (text.starts_with('T')) {
    text.remove_prefix(1);
    const auto taken = takeTimeOfDay(text);
    if (!taken) return std::nullopt;
    time = *taken;
  } else if (!text.empty()) {
    return std::nullopt;
  }
  return platform::GregorianCalendar::secondsFromCivil({year, month, day}) + time;
}

std::optional<std::int64_t> timeOfDaySeconds(std::string_view text) {
  text = platform::trimmed(text);
  return takeTimeOfDay(text);
}

std::optional<std::int64_t> durationSeconds(std::string_view text) {
  text = platform::trimmed(text);
  const bool isNegative = text.starts_with('-');
  if (isNegative) text.remove_prefix(1);
  if (!text.starts_with('P')) return std::nullopt;
  text.remove_prefix(1);
  std::int64_t seconds = 0;
  bool isTime = false;
  while (!text.empty()) {
    if (text.starts_with('T')) {
      isTime = true;
      text.remove_prefix(1);
      continue;
    }
    const auto number = takeDigits(text);
    skipFraction(text);
    const auto unit = text.empty() ? std::nullopt : secondsOfUnit(text.front(), isTime);
    if (!number || !unit) return std::nullopt;
    text.remove_prefix(1);
    seconds = *number > (kLongest - seconds) / *unit ? kLongest : seconds + *number * *unit;
  }
  return isNegative ? -seconds : seconds;
}

std::optional<std::int64_t> numberOf(std::string_view text) {
  text = platform::trimmed(text);
  const auto number = platform::scanDouble(text);
  if (!number || number->length != text.size()) return std::nullopt;
  return platform::truncated<std::int64_t>(number->value);
}

}  // namespace conform
