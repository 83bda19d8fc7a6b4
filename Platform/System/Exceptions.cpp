#include "Platform/System/Exceptions.h"

#include <cstdlib>

#include "Platform/System/Log.h"

namespace platform {

void requireOrEndProcess(bool holds, std::string_view message) {
  if (holds) return;
  log("Assertion failed: {}", message);
  std::abort();
}

}  // namespace platform
