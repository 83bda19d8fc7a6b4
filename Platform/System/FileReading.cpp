#include "Platform/System/FileReading.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "Platform/System/Descriptor.h"

namespace platform {
namespace {

using Bytes = std::optional<std::string>;

constexpr int kNotInside = EXDEV;  // the kernel's error for a path that leads out of the folder

Bytes refused(std::string* problem, std::string reason) {
  if (problem != nullptr) *problem = std::move(reason);
  return std::nullopt;
}

Bytes refused(std::string* problem, int error) {
  return refused(problem, error == kNotInside ? "Not inside the bundle" : std::strerror(error));
}

std::string largerThan(std::uint64_t limit) {
  constexpr std::array<const char*, 4> kUnits = {"bytes", "KiB", "MiB", "GiB"};
  std::size_t unit = 0;
  for (; limit % 1024 == 0 && unit + 1 < kUnits.size(); ++unit) limit /= 1024;
  return fmt::format("Larger than {} {}", limit, kUnits[unit]);
}

/// The next size for a full buffer. At most twice what was read so far, even if the file claims to be larger: a sparse
/// file of a few blocks can claim terabytes.
std::uint64_t grown(std::uint64_t size, std::uint64_t claimed, std::uint64_t limit) {
  // One byte more than claimed, so that the end is noticed without growing again; at most one more than the limit, so
  // that exceeding it is noticed.
  const std::uint64_t wanted = size <= claimed ? std::min(2 * size, claimed + 1) : 2 * size;
  return std::min(wanted, limit + 1);
}

std::uint64_t firstSize(const struct stat& info) {
  constexpr std::uint64_t kBlock = 512, kLeast = 64 * 1024;
  const auto claimed = static_cast<std::uint64_t>(info.st_size);
  const std::uint64_t present = std::max(static_cast<std::uint64_t>(info.st_blocks) * kBlock, kLeast);
  return claimed == 0 ? kLeast : std::min(present, claimed) + 1;
}

Bytes readOpened(const Descriptor& file, const struct stat& info, std::uint64_t limit, std::string* problem) {
  std::string bytes(firstSize(info), '\0');
  std::size_t filled = 0;
  while (filled <= limit) {
    if (filled == bytes.size()) bytes.resize(grown(filled, static_cast<std::uint64_t>(info.st_size), limit));
    const ssize_t got = ::read(file.get(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return refused(problem, errno);
    if (got == 0) {
      bytes.resize(filled);
      return bytes;
    }
    filled += static_cast<std::size_t>(got);
  }
  return refused(problem, largerThan(limit));
}

/// Whether a file over 1 MiB is nearly all holes. A few kilobytes could make gigabytes of NULs, which nobody writes.
bool isMostlyHoles(const Descriptor& file, const struct stat& info) {
  constexpr std::uint64_t kFree = 1 << 20, kMostGrowth = 10;
  const auto size = static_cast<std::uint64_t>(info.st_size);
  return S_ISREG(info.st_mode) && size > kFree && file.dataSize(size / kMostGrowth) < size / kMostGrowth;
}

Bytes readAny(const Descriptor& file, bool mustBeRegular, std::uint64_t limit, std::string* problem) {
  struct stat info {};
  if (!file.isOpen() || ::fstat(file.get(), &info) != 0) return refused(problem, errno);
  if (mustBeRegular && !S_ISREG(info.st_mode)) return refused(problem, "Not a regular file");
  if (info.st_size > 0 && static_cast<std::uint64_t>(info.st_size) > limit) return refused(problem, largerThan(limit));
  if (isMostlyHoles(file, info)) return refused(problem, "It consists of holes");
  return readOpened(file, info, limit, problem);
}

/// Tells the states of a file apart. Not by the time of the last change of its status, since that is another one when
/// the file's name is given to a new file.
struct Version {
  off_t size;
  std::int64_t seconds;
  std::int64_t nanoseconds;
  bool isCoarse;  ///< the file system seems to count whole seconds, in which a file can be written again

  bool operator==(const Version& other) const {
    return size == other.size && seconds == other.seconds && nanoseconds == other.nanoseconds;
  }
};

std::optional<Version> versionOf(const Descriptor& file) {
  struct stat info {};
  if (!file.isOpen() || ::fstat(file.get(), &info) != 0) return std::nullopt;
  return Version{info.st_size, info.st_mtim.tv_sec, info.st_mtim.tv_nsec, info.st_ctim.tv_nsec == 0};
}

constexpr std::uint64_t kLargest = std::uint64_t{4} << 30;
constexpr const char* kChanged = "It was changed meanwhile";

/// The bytes of an open file from its beginning. None, with the reason, when they cannot be read or are not of this
/// version: while another program overwrites the file, they are a mixture of the old ones and the new.
Bytes readVersion(const Descriptor& file, const std::optional<Version>& version, std::string* problem) {
  if (file.isOpen()) ::lseek(file.get(), 0, SEEK_SET);
  Bytes bytes = readAny(file, true, kLargest, problem);
  return !bytes || versionOf(file) == version ? bytes : refused(problem, kChanged);
}

/// The real path of an open file; empty, with errno set, when it cannot be determined.
std::string pathOf(const Descriptor& file) {
  std::error_code error;
  const std::string path = std::filesystem::read_symlink(file.link(), error);
  if (error) errno = error.value();
  return path;
}

bool isInside(const std::string& path, const std::string& folder) { return path.starts_with(folder + "/"); }

/// Opens the named file, unless a part of the path or a link leads out of the folder.
Descriptor openBeneath(const Descriptor& folder, const std::string& name) {
  open_how how{};
  how.flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK;  // a pipe without a writer must not be waited for
  how.resolve = RESOLVE_BENEATH;
  return Descriptor(static_cast<int>(::syscall(SYS_openat2, folder.get(), name.c_str(), &how, sizeof how)));
}

/// Opens the named file if it is inside the folder, whichever way leads there. Finds that out before opening it for
/// reading, since merely opening a device can have effects.
Descriptor openWhatIsInside(const Descriptor& folder, const std::string& name) {
  const Descriptor found(::openat(folder.get(), name.c_str(), O_PATH | O_CLOEXEC));
  if (!found.isOpen()) return {};
  const std::string root = pathOf(folder);
  const std::string path = pathOf(found);
  if (root.empty() || path.empty()) return {};
  errno = kNotInside;
  return isInside(path, root) ? found.reopenedForReading() : Descriptor();
}

Descriptor openInside(const Descriptor& folder, const std::string& name) {
  Descriptor file = openBeneath(folder, name);
  // EXDEV: an absolute link may still end inside the folder. The others: the kernel is too old, a container forbids the
  // call, or somebody moved folders meanwhile or has a lease on the file.
  const bool isUndecided = errno == EXDEV || errno == ENOSYS || errno == EPERM || errno == EAGAIN;
  if (!file.isOpen() && isUndecided) file = openWhatIsInside(folder, name);
  return file;
}

}  // namespace

std::optional<std::string> readFile(const std::string& path, std::uint64_t limit, std::string* problem) {
  return readAny(Descriptor::forReading(path), true, limit, problem);
}

std::optional<std::string> readStream(const std::string& path, std::uint64_t limit, std::string* problem) {
  return readAny(Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)), false, limit, problem);
}

std::optional<std::string> readFileInside(const std::string& folder, const std::string& name, std::string* problem,
                                          ReadAgain* again) {
  const Descriptor root(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!root.isOpen()) return refused(problem, errno);
  if (name.empty() || name == "." || name.starts_with('/')) return refused(problem, kNotInside);
  const auto file = std::make_shared<Descriptor>(openInside(root, name));
  const std::optional<Version> version = versionOf(*file);
  Bytes bytes = readVersion(*file, version, problem);
  if (bytes && version->isCoarse && readVersion(*file, version, nullptr) != bytes) return refused(problem, kChanged);
  if (again == nullptr || !bytes) return bytes;
  if (version->isCoarse) {
    *again = [kept = std::make_shared<const std::string>(*bytes)] { return *kept; };
  } else {
    *again = [file, version] { return readVersion(*file, version, nullptr); };
  }
  return bytes;
}

}  // namespace platform
