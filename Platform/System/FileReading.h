#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

// Whole files as texts. Each gives none, with the reason in `problem`, when the file cannot be read or has more bytes
// than the limit ("Larger than 4 GiB"). A file that claims to be larger than that is not read at all.

/// The bytes of a regular file. Anything else is refused, so that nothing blocks on a pipe or a device.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::uint64_t limit,
                                                  std::string* problem = nullptr);
/// The bytes of anything that can be read to its end: also of a pipe, for whose writer this waits.
[[nodiscard]] std::optional<std::string> readStream(const std::string& path, std::uint64_t limit,
                                                    std::string* problem = nullptr);
/// The bytes of a regular file below a folder, 4 GiB at most. Links are followed as long as they end inside; an
/// absolute name, and whatever leads out of the folder by ".." or by a symbolic link, is refused. That holds also when
/// somebody changes the folder meanwhile: what was opened is judged, not what has the name.
[[nodiscard]] std::optional<std::string> readFileInside(const std::string& folder, const std::string& name,
                                                        std::string* problem = nullptr);

}  // namespace platform
