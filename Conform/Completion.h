#pragma once

#include <cstdint>

#include "Platform/XML/XMLTree.h"

namespace conform {

/// whole * part / of, rounded to the nearest whole number, halves upwards: shareOf(8, 1, 3) is 3. No argument may be
/// negative, and `of` not 0.
[[nodiscard]] std::int64_t shareOf(std::int64_t whole, std::int64_t part, std::int64_t of);

/// How much of a task is done, as a ratio of whole numbers: `done` of `total`, from 0 to 1.
struct Completion {
  std::int64_t done = 0;
  std::int64_t total = 1;

  /// `effort-done` of `effort` when both are above 0, otherwise `completion-percentage`, with fifteen decimals.
  /// @throws InvariantFailure when one of them is not a number; the exact export raises it earlier.
  [[nodiscard]] static Completion ofTask(xml::Node task);

  /// How many of these seconds of work are done; the rest remains.
  [[nodiscard]] std::int64_t doneOf(std::int64_t work) const { return shareOf(work, done, total); }
};

}  // namespace conform
