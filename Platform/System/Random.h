#pragma once

#include <cstdint>

namespace platform {

/// One value of 31 random bits from the C library's generator, which is seeded with the time in seconds at
/// the first call in the process.
[[nodiscard]] std::uint32_t randomValue();

/// 64 bits from the kernel that nobody can foresee; the time in seconds while the kernel has none.
[[nodiscard]] std::uint64_t unforeseeableValue();

}  // namespace platform
