#include "Platform/System/Console.h"

#include <fmt/format.h>
#include <unistd.h>

#include "Platform/System/Descriptor.h"
#include "Platform/Text/Texts.h"

namespace platform {

void writeToStandardError(std::string_view text) {
  static_cast<void>(writeAll(STDERR_FILENO, text));  // there is nowhere to report a failure
}

bool writeToStandardOutput(std::string_view text) { return writeAll(STDOUT_FILENO, text); }

void say(std::string_view program, std::string_view text) {
  writeToStandardError(fmt::format("{}: {}\n", program, printable(text)));
}

}  // namespace platform
