#pragma once

#include <cstdint>

#include "Platform/XML/XMLTree.h"

namespace conform {

/// The part of a whole that stands in the same ratio to it as `part` to `of`, rounded to the nearest whole number,
/// halves upwards. None is below 0, and `of` is not 0.
[[nodiscard]] std::int64_t shareOf(std::int64_t whole, std::int64_t part, std::int64_t of);

/// How much of a task is done, as a ratio of whole numbers: `done` of `total`, from 0 to 1.
struct Completion {
  std::int64_t done = 0;
  std::int64_t total = 1;

  /// `effort-done` of `effort` when both are above 0, otherwise `completion-percentage`, with fifteen decimals.
  /// @throws InvariantFailure when one of them holds no number; the exact export has raised that before.
  [[nodiscard]] static Completion ofTask(xml::Node task);

  /// The seconds that are done of so many seconds of work; the rest remains.
  [[nodiscard]] std::int64_t doneOf(std::int64_t work) const { return shareOf(work, done, total); }
};

}  // namespace conform
