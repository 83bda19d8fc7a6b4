#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace conform {

// What the texts of a written file mean. Each gives none when the text is anything else.

/// "2026-02-06T08:30:00" or "2026-02-06" as seconds from 1970-01-01T00:00:00 on the plan's clock. A fraction and an
/// offset behind that are not looked at.
[[nodiscard]] std::optional<std::int64_t> dateTimeSeconds(std::string_view text);
/// "08:30:00" or "08:30" as seconds from midnight, up to "24:00:00".
[[nodiscard]] std::optional<std::int64_t> timeOfDaySeconds(std::string_view text);
/// "PT120H30M0S" or "P1DT2H" as seconds, a day having 24 hours; held at 10^15. Fractions are cut off.
[[nodiscard]] std::optional<std::int64_t> durationSeconds(std::string_view text);
/// A whole number, also one with a fraction, which is cut off.
[[nodiscard]] std::optional<std::int64_t> numberOf(std::string_view text);

}  // namespace conform
