#include "Platform/System/Console.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>

#include "Platform/Text/Texts.h"

namespace platform {

void writeToStandardError(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;  // nowhere to tell it
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

void say(std::string_view program, std::string_view text) {
  writeToStandardError(fmt::format("{}: {}\n", program, printable(text)));
}

}  // namespace platform
