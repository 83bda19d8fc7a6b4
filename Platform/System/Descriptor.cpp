#include "Platform/System/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace platform {
namespace {

constexpr int kReading = O_RDONLY | O_CLOEXEC;

/// After a failed write: if the pipe was full, waits until there is room. Returns whether to write again. Any program
/// that has the pipe open can make it non-blocking.
bool waitsForRoom(int descriptor) {
  pollfd waiting = {descriptor, POLLOUT, 0};
  return (errno == EAGAIN || errno == EWOULDBLOCK) && (::poll(&waiting, 1, -1) == 1 || errno == EINTR);
}

}  // namespace

Descriptor::~Descriptor() {
  if (isOpen()) ::close(number_);
}

Descriptor Descriptor::besideStandardStreams(int number) {
  Descriptor file(number);
  if (file.isOpen() && number <= STDERR_FILENO) return Descriptor(::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  return file;
}

Descriptor Descriptor::forReading(const std::string& path) {
  Descriptor file(::open(path.c_str(), kReading | O_NONBLOCK));
  if (file.isOpen() || errno != EWOULDBLOCK) return file;
  file = Descriptor(::open(path.c_str(), O_PATH | O_CLOEXEC)).reopenedForReading();
  if (!file.isOpen()) errno = EWOULDBLOCK;
  return file;
}

Descriptor Descriptor::reopenedForReading() const {
  struct stat info {};
  if (!isOpen() || ::fstat(number_, &info) != 0) return {};
  return Descriptor(::open(link().c_str(), S_ISREG(info.st_mode) ? kReading : kReading | O_NONBLOCK));
}

std::uint64_t Descriptor::dataSize(std::uint64_t enough) const {
  std::uint64_t size = 0;
  off_t end = 0;
  while (size < enough) {
    const off_t begin = ::lseek(number_, end, SEEK_DATA);
    if (begin < 0 && errno == ENXIO) break;  // there is nothing but holes
    end = begin < 0 ? -1 : ::lseek(number_, begin, SEEK_HOLE);
    size = end < 0 ? enough : size + static_cast<std::uint64_t>(end - begin);
  }
  ::lseek(number_, 0, SEEK_SET);
  return std::min(size, enough);
}

std::string Descriptor::link() const { return "/proc/self/fd/" + std::to_string(number_); }

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && (errno == EINTR || waitsForRoom(descriptor))) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace platform
