#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace conform {

// The meaning of texts in a written file. Each returns none when the text has another form.

/// "2026-02-06T08:30:00" or "2026-02-06" as seconds from 1970-01-01T00:00:00 on the plan's clock. A fraction and an
/// offset after it are ignored.
[[nodiscard]] std::optional<std::int64_t> dateTimeSeconds(std::string_view text);
/// "08:30:00" or "08:30" as seconds from midnight, up to "24:00:00".
[[nodiscard]] std::optional<std::int64_t> timeOfDaySeconds(std::string_view text);
/// "PT120H30M0S", "PT0S" or "P1DT2H" as seconds, a day having 24 hours; at most 10^15. Fractions are cut off.
[[nodiscard]] std::optional<std::int64_t> durationSeconds(std::string_view text);
/// A whole number; a fraction is cut off: "9600.5" gives 9600.
[[nodiscard]] std::optional<std::int64_t> numberOf(std::string_view text);

}  // namespace conform
