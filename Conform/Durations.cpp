#include "Conform/Durations.h"

#include <fmt/compile.h>

#include <charconv>

#include "Platform/Time/Instant.h"

using platform::kSecondsPerHour;
using platform::kSecondsPerMinute;

namespace conform {
namespace {

/// A sum of this many hours, minutes and seconds does not overflow.
constexpr std::int64_t kMaximumPart = 1'000'000'000'000;

/// Removes "<digits><unit>" from the front of the text and returns the number; none when the text begins differently.
std::optional<std::int64_t> takePart(std::string_view& text, char unit) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || next == end || *next != unit || number < 0 || number > kMaximumPart) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(next - text.data()) + 1);
  return number;
}

}  // namespace

std::optional<std::int64_t> secondsOf(std::string_view duration) {
  if (!duration.starts_with("PT")) return std::nullopt;
  duration.remove_prefix(2);
  const auto hours = takePart(duration, 'H');
  const auto minutes = takePart(duration, 'M');
  const auto seconds = takePart(duration, 'S');
  if (!hours || !minutes || !seconds || !duration.empty()) return std::nullopt;
  return *hours * kSecondsPerHour + *minutes * kSecondsPerMinute + *seconds;
}

std::string durationText(std::int64_t seconds) {
  return fmt::format(FMT_COMPILE("PT{}H{}M{}S"), seconds / kSecondsPerHour,
                     seconds % kSecondsPerHour / kSecondsPerMinute, seconds % kSecondsPerMinute);
}

}  // namespace conform
