#include "Platform/System/Random.h"

#include <sys/random.h>

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

std::uint64_t unforeseeableValue() {
  std::uint64_t value = 0;
  const bool isGiven = getrandom(&value, sizeof value, GRND_NONBLOCK) == sizeof value;
  return isGiven ? value : static_cast<std::uint64_t>(time(nullptr));
}

}  // namespace platform
