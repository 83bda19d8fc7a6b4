#pragma once

// Only for files that call ICU.

#include <unicode/utypes.h>

#include <new>

namespace platform {

/// Whether an operation of ICU failed.
/// @throws std::bad_alloc when it lacked memory: what it found by then is not all that there is.
inline bool hasFailed(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  return U_FAILURE(status) != 0;
}

}  // namespace platform
