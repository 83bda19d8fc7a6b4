#pragma once

namespace platform {

/// A 128-bit number, which sums and products of 64-bit numbers cannot overflow.
__extension__ using Wide = __int128;

}  // namespace platform
