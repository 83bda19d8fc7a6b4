#pragma once

namespace platform {

/// For sums and products of 64-bit numbers, which cannot overflow it.
__extension__ using Wide = __int128;

}  // namespace platform
