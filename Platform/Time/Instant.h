#pragma once

#include <compare>
#include <cstdint>

namespace platform {

inline constexpr std::int64_t kSecondsPerMinute = 60;
inline constexpr std::int64_t kSecondsPerHour = 3600;
inline constexpr std::int64_t kSecondsPerDay = 86400;

/// A point in time: seconds since 1970-01-01T00:00:00Z, leap seconds not counted. Never a wall clock: only
/// TimeZone and GregorianCalendar lead from one to the other.
struct Instant {
  double seconds = 0;

  // NOLINTNEXTLINE(modernize-use-nullptr): taken for a comparison of pointers, by clang-tidy 14
  friend auto operator<=>(const Instant&, const Instant&) = default;
};

[[nodiscard]] constexpr Instant operator+(Instant instant, double seconds) { return {instant.seconds + seconds}; }
[[nodiscard]] constexpr Instant operator-(Instant instant, double seconds) { return {instant.seconds - seconds}; }
/// Elapsed seconds from the right instant to the left one.
[[nodiscard]] constexpr double operator-(Instant later, Instant earlier) { return later.seconds - earlier.seconds; }

}  // namespace platform
