#pragma once

#include <stdexcept>
#include <string>

/// A property that does not hold. Nothing in the exporter catches it: a fuzz run ends with it, and so does a test.
struct Broken : std::logic_error {
  using std::logic_error::logic_error;
};

inline void check(bool holds, const std::string& property) {
  if (!holds) throw Broken(property);
}
