#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

// Days of the week as the source names and MSPDI numbers them (its day types): 1 is Sunday.

inline constexpr std::int32_t kSunday = 1;
inline constexpr std::int32_t kMonday = 2;
inline constexpr std::int32_t kFriday = 6;
inline constexpr std::int32_t kSaturday = 7;
inline constexpr std::int32_t kDaysPerWeek = 7;

/// A day name's place is its number; the first place is no day.
inline constexpr std::array<std::string_view, 8> kDayNames = {"",          "sunday",   "monday", "tuesday",
                                                              "wednesday", "thursday", "friday", "saturday"};

/// The number of a day name; none for anything else.
[[nodiscard]] constexpr std::optional<std::int32_t> weekdayOfName(std::string_view name) {
  const auto* found = std::find(kDayNames.begin() + kSunday, kDayNames.end(), name);
  if (found == kDayNames.end()) return std::nullopt;
  return static_cast<std::int32_t>(found - kDayNames.begin());
}
