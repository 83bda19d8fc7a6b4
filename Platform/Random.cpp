#include "Platform/Random.h"

#include <cstdlib>
#include <ctime>

namespace platform {

std::uint32_t randomValue() {
  static const bool seeded = [] {
    srandom(static_cast<unsigned>(time(nullptr)));
    return true;
  }();
  static_cast<void>(seeded);
  return static_cast<std::uint32_t>(random());
}

}  // namespace platform
