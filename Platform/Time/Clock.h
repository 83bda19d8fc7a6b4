#pragma once

#include "Platform/Time/Instant.h"

namespace platform {

/// The current time.
class Clock {
 public:
  /// The moment that counts as now in an export: SOURCE_DATE_EPOCH (seconds since 1970) from the environment when it is
  /// a whole number, so that output can be reproduced; otherwise the wall clock.
  [[nodiscard]] static Instant now();

  /// Makes now() read the environment again, which it otherwise does only once. For tests.
  static void resetForTesting();
};

}  // namespace platform
