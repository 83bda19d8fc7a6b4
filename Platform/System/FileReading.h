#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace platform {

/// Reads the bytes of a file once more; none when that is not possible.
using ReadAgain = std::function<std::optional<std::string>()>;

// Whole files as texts. Each returns none, with the reason in `problem`, when the file cannot be read or has more bytes
// than the limit ("Larger than 4 GiB"). When the file's size already exceeds the limit, nothing is read, and neither is
// a file over 1 MiB of which less than a tenth is not holes ("It consists of holes").

/// The bytes of a regular file. Anything else is refused, so that nothing blocks on a pipe or a device.
[[nodiscard]] std::optional<std::string> readFile(const std::string& path, std::uint64_t limit,
                                                  std::string* problem = nullptr);
/// The bytes of anything that can be read to its end, such as a pipe, for whose writer this waits.
[[nodiscard]] std::optional<std::string> readStream(const std::string& path, std::uint64_t limit,
                                                    std::string* problem = nullptr);
/// The bytes of a regular file below a folder, at most 4 GiB. An absolute name, and a name that leads out of the folder
/// by ".." or a symbolic link, is refused; links that end inside are followed. The check is made on the opened file and
/// not on its name, so changing the folder meanwhile cannot get around it.
///
///   readFileInside("Plan.kvdx", "Current Plan.xml", &problem)  // the file's text
///   readFileInside("Plan.kvdx", "../secret.xml", &problem)     // none, "Not inside the bundle"
/// @param again set to a function that reads the same bytes once more, also when the file has been removed or another
/// one has its name. It returns none when the file was written since. It keeps the file open, or its bytes where the
/// times of files are whole seconds. Not set when nothing could be read.
[[nodiscard]] std::optional<std::string> readFileInside(const std::string& folder, const std::string& name,
                                                        std::string* problem = nullptr, ReadAgain* again = nullptr);

}  // namespace platform
