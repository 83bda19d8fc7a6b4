#include "Platform/Time/Clock.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace platform {
namespace {

std::optional<Instant> environmentsMoment() {
  const char* epoch = std::getenv("SOURCE_DATE_EPOCH");
  if (epoch == nullptr) return std::nullopt;
  const std::string_view text(epoch);
  std::int64_t seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return Instant{static_cast<double>(seconds)};
}

/// Determined only once, since the offset of every date in summer depends on it (MSPCDateComponents::systemOffset()).
std::optional<Instant>& fixedMoment() {
  static std::optional<Instant> moment = environmentsMoment();
  return moment;
}

}  // namespace

void Clock::resetForTesting() { fixedMoment() = environmentsMoment(); }

Instant Clock::now() {
  if (const auto& moment = fixedMoment()) return *moment;
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return {std::chrono::duration<double>(sinceEpoch).count()};
}

}  // namespace platform
