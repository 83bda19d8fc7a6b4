#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Time/Instant.h"

namespace platform {

/// Prints and reads instants by a Unicode date pattern ("yyyy", "MM", "dd", "HH", "mm", "ss", "Z"), in a named
/// zone and independent of the locale.
class DateFormatter {
 public:
  /// @param zoneName a zone identifier, for example "Europe/Berlin" or "GMT".
  DateFormatter(std::string_view pattern, const std::string& zoneName);
  ~DateFormatter();

  [[nodiscard]] std::string format(Instant instant) const;
  /// The instant, or none when the text does not begin with a date of the pattern
  /// or goes on after it.
  [[nodiscard]] std::optional<Instant> parseWhole(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<Format> format_;
};

}  // namespace platform
