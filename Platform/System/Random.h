#pragma once

#include <cstdint>

namespace platform {

/// One value of 31 random bits from the C library's generator, which is seeded with the time in seconds at
/// the first call in the process.
[[nodiscard]] std::uint32_t randomValue();

/// 64 unpredictable bits from the kernel; the time in seconds when the kernel has none yet.
[[nodiscard]] std::uint64_t unforeseeableValue();

}  // namespace platform
