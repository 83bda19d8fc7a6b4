#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace conform {

// Clock readings of the zone that the file is written in, as seconds from 1970-01-01T00:00:00 on its clocks. Days are
// counted from that day.

/// The clock reading at a date of a calendar or of a piece of a split task.
/// @param kvdx in kvdx form; without a zone, it already is such a reading. Where clocks skip midnight, the first moment
/// of the day counts as midnight. None for an empty text.
[[nodiscard]] std::optional<std::int64_t> wallClock(std::string_view kvdx);
/// The reading of a date in the file, "2026-05-04T08:00:00". None for an empty text.
[[nodiscard]] std::optional<std::int64_t> wallClockOfText(std::string_view mspdi);
/// The reading as a date of the file.
[[nodiscard]] std::string wallClockText(std::int64_t reading);

/// The day of the reading. Midnight belongs to the day that it begins.
[[nodiscard]] std::int64_t dayOf(std::int64_t reading);
/// Day type of the day: 1 Sunday to 7 Saturday.
[[nodiscard]] int weekdayOf(std::int64_t day);

/// The first of January of the year.
[[nodiscard]] std::int64_t firstDayOfYear(std::int64_t year);

}  // namespace conform
