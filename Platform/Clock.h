#pragma once

#include "Platform/Instant.h"

namespace platform {

/// The current time.
class Clock {
 public:
  /// The moment that counts as now in an export: the environment's SOURCE_DATE_EPOCH (whole seconds) when it
  /// holds a whole number, so that output can be reproduced; otherwise the wall clock.
  [[nodiscard]] static Instant now();

  /// Forgets the environment's moment, so that the next call looks at the environment again. For tests.
  static void resetForTesting();
};

}  // namespace platform
