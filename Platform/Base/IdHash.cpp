#include "Platform/Base/IdHash.h"

#include "Platform/System/Random.h"

namespace platform {

const std::uint64_t IdHash::spread_ = unforeseeableValue() | 1U;

}  // namespace platform
