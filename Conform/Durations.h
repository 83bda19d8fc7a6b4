#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace conform {

// Durations in the one form that the exporter writes. FileTexts.h reads those of any program.

/// The seconds of a duration of the form "PT8H30M0S"; none for any other text and for negative parts.
[[nodiscard]] std::optional<std::int64_t> secondsOf(std::string_view duration);
/// These seconds in the form above; they must not be negative. Hours are not converted to days: 90000 gives
/// "PT25H0M0S".
[[nodiscard]] std::string durationText(std::int64_t seconds);

}  // namespace conform
