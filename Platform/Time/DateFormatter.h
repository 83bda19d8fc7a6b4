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
  /// @param zone in which dates are printed; dates are read in it when the pattern has no "Z". Must outlive the
  /// formatter.
  DateFormatter(std::string_view pattern, const TimeZone& zone);
  ~DateFormatter();

  [[nodiscard]] std::string format(Instant instant) const;
  /// The instant; none unless the whole text matches the pattern. A component that is out of range rolls over into the
  /// next higher one:
  ///
  ///   DateFormatter("yyyy-MM-dd", utc).parseWhole("2026-02-30")                    // 2026-03-02T00:00:00Z
  ///   DateFormatter("yyyy-MM-dd HH:mm:ss", utc).parseWhole("2026-05-06 08:00:75")  // 2026-05-06T08:01:15Z
  [[nodiscard]] std::optional<Instant> parseWhole(std::string_view text) const;

 private:
  struct Format;
  std::unique_ptr<Format> format_;
};

}  // namespace platform
