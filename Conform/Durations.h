#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace conform {

/// The seconds of a duration in the format's usual form, "PT8H30M0S"; none for any other text and for negative parts.
[[nodiscard]] std::optional<std::int64_t> secondsOf(std::string_view duration);
/// The form above of so many seconds, which are 0 or more; hours are not folded into days.
[[nodiscard]] std::string durationText(std::int64_t seconds);

}  // namespace conform
