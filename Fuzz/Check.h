#pragma once

#include <stdexcept>
#include <string>

/// Raised when a property does not hold. Nothing in the exporter catches it, so it ends a fuzz run or a test.
struct Broken : std::logic_error {
  using std::logic_error::logic_error;
};

inline void check(bool holds, const std::string& property) {
  if (!holds) throw Broken(property);
}
