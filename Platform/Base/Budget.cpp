#include "Platform/Base/Budget.h"

#include <algorithm>

#include "Platform/System/Exceptions.h"

namespace platform {

namespace {

constexpr std::size_t kKB = 1000;
constexpr std::size_t kMB = 1000 * kKB;
constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

}  // namespace

Budget::Budget() {
  read_ = 0;
  spent_ = 0;
  allowed_ = allowance(0);
}

Budget::~Budget() { allowed_ = kUnlimited; }

// The real plans whose output is largest, compared with their size, have several materials on every task for years;
// they need less than 1000 bytes for each byte read. Large plans are never like that throughout, so beyond about two
// gigabytes only 10 bytes are allowed for each further byte.
std::size_t Budget::allowance(std::size_t bytesRead) {
  return std::min(256 * kMB + 1000 * bytesRead, 2048 * kMB + 10 * bytesRead);
}

void Budget::raise(std::size_t bytesRead) {
  if (allowed_ == kUnlimited) return;
  read_ += bytesRead;
  allowed_ = allowance(read_);
}

void Budget::fail() {
  throw InvariantFailure(
      fmt::format("The export grew too large: {} KB of documents allow for {} MB. Look in the plan for what is far too "
                  "long or repeated far too often: names, schedules, spans of time.",
                  (read_ + kKB - 1) / kKB, allowed_ / kMB));
}

}  // namespace platform
