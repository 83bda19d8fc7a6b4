#pragma once

#include <string_view>

namespace conform {

class Copy;

/// One correction: its name, and the function that does it. A correction does not change what is already right, so
/// correcting a file twice changes nothing. One that needs the plan does nothing without it.
struct Correction {
  std::string_view name;
  void (*apply)(Copy& copy);
};

/// Runs all corrections in order.
void correct(Copy& copy);

}  // namespace conform
