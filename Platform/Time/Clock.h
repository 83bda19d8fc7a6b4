#pragma once

#include "Platform/Time/Instant.h"

namespace platform {

/// The current time.
class Clock {
 public:
  /// The moment that counts as now in an export: the environment's SOURCE_DATE_EPOCH (whole seconds) when it
  /// holds a whole number, so that output can be reproduced; otherwise the wall clock.
  [[nodiscard]] static Instant now();

  /// Looks at the environment again, which now() does only the first time. For tests.
  static void resetForTesting();
};

}  // namespace platform
