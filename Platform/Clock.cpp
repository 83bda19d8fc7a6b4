#include "Platform/Clock.h"

#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace platform {

Instant Clock::now() {
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) {
    const std::string_view text(epoch);
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error == std::errc() && end == text.data() + text.size()) {
      return {static_cast<double>(seconds)};
    }
  }
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return {std::chrono::duration<double>(sinceEpoch).count()};
}

}  // namespace platform
