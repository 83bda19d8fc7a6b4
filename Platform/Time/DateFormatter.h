#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Time/Instant.h"
#include "Platform/Time/TimeZone.h"

namespace platform {

/// Prints and reads instants by a Unicode date pattern ("yyyy", "MM", "dd", "HH", "mm", "ss", "Z"), independent of the
/// locale.
class DateFormatter {
 public:
  /// @param pattern must outlive the formatter.
  /// @param zone whose clocks are shown and, where the pattern has no "Z", read; must outlive the formatter.
  DateFormatter(std::string_view pattern, const TimeZone& zone);
  ~DateFormatter();

  [[nodiscard]] std::string format(Instant instant) const;
  /// The instant, or none when the text does not begin with a date of the pattern or goes on after it. A component out
  /// of range rolls over into the next higher one: 30 February is the first or second of March, second 75 the next
  /// minute's 15th.
  [[nodiscard]] std::optional<Instant> parseWhole(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<Format> format_;
};

}  // namespace platform
