#include "Platform/System/Descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

Descriptor::~Descriptor() {
  if (isOpen()) ::close(number_);
}

Descriptor Descriptor::besideStandardStreams(int number) {
  Descriptor file(number);
  if (file.isOpen() && number <= STDERR_FILENO) return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return file;
}

std::string Descriptor::link() const { return "/proc/self/fd/" + std::to_string(number_); }

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace platform
