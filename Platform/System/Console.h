#pragma once

#include <string_view>

namespace platform {

/// Writes the text with a single write, so that lines of programs running in parallel do not mix. A closed or full
/// standard error is ignored.
void writeToStandardError(std::string_view text);

/// Writes the text to standard output.
/// @return whether all of it could be written.
[[nodiscard]] bool writeToStandardOutput(std::string_view text);

/// Writes a line for people to standard error: "program: text". Characters that a terminal could take for a command are
/// escaped, see printable().
void say(std::string_view program, std::string_view text);

}  // namespace platform
