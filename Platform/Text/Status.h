#pragma once

// Only for files that call ICU.

#include <unicode/utypes.h>

#include <new>

namespace platform {

/// Whether an operation of ICU failed.
/// @throws std::bad_alloc when it lacked memory, because a part of the result would be taken for the whole.
inline bool hasFailed(UErrorCode status) {
  if (status == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  return U_FAILURE(status) != 0;
}

}  // namespace platform
