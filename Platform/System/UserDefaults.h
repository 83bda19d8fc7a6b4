#pragma once

#include <map>
#include <string>
#include <string_view>

namespace platform {

/// Settings kept by name: the TOML file "<domain>.toml" in $XDG_CONFIG_HOME (by default ~/.config).
class UserDefaults {
 public:
  /// The domain's top-level values as texts: a TOML truth value and a number give "true" or "false" (0 and 0.0 are
  /// false), a text itself; values of other kinds are left out. A domain that does not exist is empty. A file that
  /// cannot be read, is larger than 1 MiB, could nest more than 200 tables, or is no TOML gives one warning line in
  /// the log, with file and reason, and an empty domain.
  [[nodiscard]] static std::map<std::string, std::string> persistentDomain(std::string_view domain);
};

}  // namespace platform
