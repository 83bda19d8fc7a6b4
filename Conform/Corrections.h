#pragma once

#include <string_view>

namespace conform {

class Copy;

/// One correction: what it is called in reports, and what does it. Every correction leaves alone what is right already,
/// so that a corrected file stays as it is; one that needs the plan does nothing without it.
struct Correction {
  std::string_view name;
  void (*apply)(Copy& copy);
};

/// Runs all corrections in their order.
void correct(Copy& copy);

}  // namespace conform
