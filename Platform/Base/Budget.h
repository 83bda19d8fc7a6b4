#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

namespace platform {

/// A limit on the bytes that one export may make, keep and log, which grows with the documents that it reads. A few
/// bytes of a plan can ask for gigabytes in too many ways to limit each of them. So whatever takes memory or disk space
/// is charged here, and an export that exceeds the limit ends with a message. Only one export at a time can have a
/// budget; without one there is no limit.
///
///   const Budget budget;      // spend() counts from here to the end of the block
///   Budget::raise(1'000);     // a document of 1 KB was read: 256 MB + 1 MB are allowed
///   Budget::spend(300'000'000);  // throws InvariantFailure
class Budget {
 public:
  /// Starts to count; counting ends with this object.
  Budget();
  ~Budget();
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;

  /// How many bytes may be spent after this many bytes of documents were read.
  [[nodiscard]] static std::size_t allowance(std::size_t bytesRead);

  /// Raises the limit: a document of this many bytes was read.
  static void raise(std::size_t bytesRead);

  /// Charges bytes that are about to be made or kept. Called for whole blocks of memory rather than for each object in
  /// them, so that it takes no noticeable time.
  /// @throws InvariantFailure when the limit is exceeded.
  static void spend(std::size_t bytes) {
    spent_ += bytes;
    if (spent_ > allowed_) [[unlikely]] {
      fail();
    }
  }

  /// How many bytes may still be charged.
  [[nodiscard]] static std::size_t left() { return allowed_ - std::min(spent_, allowed_); }
  /// What was charged so far, for takeBackTo().
  [[nodiscard]] static std::size_t spent() { return spent_; }
  /// Takes back what was charged since spent() had this value, because all of it is freed.
  static void takeBackTo(std::size_t spent) { spent_ = spent; }

 private:
  [[noreturn]] static void fail();

  static inline std::size_t read_ = 0;
  static inline std::size_t spent_ = 0;
  static inline std::size_t allowed_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace platform
