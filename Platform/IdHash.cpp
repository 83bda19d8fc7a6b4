#include "Platform/IdHash.h"

#include "Platform/Random.h"

namespace platform {

const std::uint64_t IdHash::spread_ = (std::uint64_t{randomValue()} << 32U | randomValue()) | 1U;

}  // namespace platform
