#pragma once

#include <cstddef>
#include <limits>

namespace platform {

/// What one export may make, keep and log, by the size of the documents that it reads. A few bytes of a plan can ask
/// for gigabytes, in more ways than could be bounded one by one: whatever takes memory or the disk is charged here, and
/// the export ends with a message when it is too much. One export at a time has a budget; without one, nothing counts.
class Budget {
 public:
  /// From now on, what is spent counts, until the end of this value's life.
  Budget();
  ~Budget();
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;

  /// How much may be spent when so many bytes of documents were read.
  [[nodiscard]] static std::size_t allowance(std::size_t bytesRead);

  /// A document of so many bytes was read.
  static void raise(std::size_t bytesRead);

  /// So many bytes are about to be made or kept. Called for blocks of memory rather than for each thing in them, so
  /// that it costs nothing.
  /// @throws InvariantFailure when that is more than is left.
  static void spend(std::size_t bytes) {
    spent_ += bytes;
    if (spent_ > allowed_) [[unlikely]] {
      fail();
    }
  }

 private:
  [[noreturn]] static void fail();

  static inline std::size_t read_ = 0;
  static inline std::size_t spent_ = 0;
  static inline std::size_t allowed_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace platform
