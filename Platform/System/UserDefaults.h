#pragma once

#include <map>
#include <string>
#include <string_view>

namespace platform {

/// Settings kept by name: the TOML file "<domain>.toml" in $XDG_CONFIG_HOME (by default ~/.config).
class UserDefaults {
 public:
  /// The domain's top-level values as texts: a truth value or a number gives "true" or "false" (0 and 0.0 are false), a
  /// text itself; other kinds of values are left out. A missing file gives an empty domain. So does one that cannot be
  /// read, is larger than 1 MiB, might nest more than 200 tables or is not TOML; the log then gets one warning with
  /// file and reason.
  ///
  ///   OverwriteFilterTarget = 1       # "true"
  ///   Name = "Plan"                   # "Plan"
  ///   Names = ["a", "b"]              # left out
  [[nodiscard]] static std::map<std::string, std::string> persistentDomain(std::string_view domain);
};

}  // namespace platform
