#include "Platform/System/AtomicFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "Platform/System/FileSystem.h"
#include "Platform/System/Random.h"

namespace platform {
namespace {

constexpr std::string_view kTemporaryPrefix = ".MSPDIExport-";

bool isSameFile(const std::string& path, const std::string& other) {
  std::error_code ignored;
  return std::filesystem::equivalent(path, other, ignored);
}

/// Whether the error is about the existing file at the target and not about the new one.
bool isProtected(int error) {
  return error == EISDIR || error == ENOTEMPTY || error == EEXIST || error == EPERM || error == EACCES ||
         error == EBUSY;
}

}  // namespace

AtomicFile::AtomicFile(std::string_view target) : folder_(deleteLastPathComponent(target)) {
  if (folder_.empty()) folder_ = ".";
  file_ = Descriptor::besideStandardStreams(::open(folder_.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666));
  // If no file can be created there at all, the second attempt fails as well and records why.
  if (!file_.isOpen()) openNamed();
}

AtomicFile::~AtomicFile() {
  if (!isNameless()) ::unlink(temporary_.c_str());
}

std::string AtomicFile::temporaryName() const {
  return appendPathComponent(folder_, fmt::format("{}{:016x}", kTemporaryPrefix, unforeseeableValue()));
}

bool AtomicFile::openNamed() {
  std::string name = temporaryName();
  const int opened = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (opened >= 0) temporary_ = std::move(name);
  file_ = Descriptor::besideStandardStreams(opened);
  if (!file_.isOpen()) fail();
  return file_.isOpen();
}

AtomicFile::Outcome AtomicFile::fail() {
  const int error = errno;
  if (!failure_.empty()) return Outcome::kFailed;
  const bool lacksFolder = error == ENOENT && !fileExists(folder_);
  failure_ = lacksFolder ? fmt::format("The folder '{}' does not exist", folder_) : std::strerror(error);
  return Outcome::kFailed;
}

void AtomicFile::append(std::string_view bytes) {
  constexpr std::size_t kBufferSize = std::size_t{1} << 16;
  if (buffer_.size() + bytes.size() >= kBufferSize) flush();
  if (bytes.size() >= kBufferSize) {
    write(bytes);
  } else {
    buffer_.append(bytes);
  }
}

void AtomicFile::write(std::string_view bytes) {
  if (failure_.empty() && !writeAll(file_.get(), bytes)) fail();
}

void AtomicFile::flush() {
  write(buffer_);
  buffer_.clear();
}

bool AtomicFile::sync() {
  flush();
  if (failure_.empty() && !synced_ && ::fsync(file_.get()) != 0) fail();
  synced_ = failure_.empty();
  return synced_;
}

AtomicFile::Outcome AtomicFile::commit(const std::string& target) {
  if (!sync()) return Outcome::kFailed;
  if (isNameless()) {
    if (linkAs(target)) return Outcome::kWritten;
    if (errno == EEXIST) return Outcome::kTargetExists;
    if (!moveToNamedFile()) return Outcome::kFailed;
  }
  return rename(target);
}

AtomicFile::Outcome AtomicFile::commitReplacing(const std::string& target) {
  if (!sync() || (isNameless() && !giveTemporaryName())) return Outcome::kFailed;
  if (replace(target)) return Outcome::kWritten;
  return isProtected(errno) ? Outcome::kTargetExists : fail();
}

bool AtomicFile::linkAs(const std::string& name) const {
  return ::linkat(AT_FDCWD, file_.link().c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

bool AtomicFile::giveTemporaryName() {
  std::string name = temporaryName();
  if (!linkAs(name)) return moveToNamedFile();
  temporary_ = std::move(name);
  return true;
}

/// Copies a nameless file into a named one. For where it cannot be linked: without /proc, and on some network file
/// systems.
bool AtomicFile::moveToNamedFile() {
  const Descriptor nameless = std::move(file_);
  if (!openNamed()) return false;
  off_t at = 0;
  ssize_t copied = 1;
  while (copied > 0) copied = ::sendfile(file_.get(), nameless.get(), &at, std::size_t{1} << 30);
  if (copied < 0) fail();
  synced_ = false;
  return sync();
}

AtomicFile::Outcome AtomicFile::rename(const std::string& target) {
  if (::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
    temporary_.clear();
    return Outcome::kWritten;
  }
  if (errno == EEXIST) return Outcome::kTargetExists;
  // EPERM: a container forbids the call.
  return errno == EINVAL || errno == ENOSYS || errno == EPERM ? linkInsteadOfRenaming(target) : fail();
}

/// For file systems that cannot rename without replacing, such as NFS: a link never replaces a file.
AtomicFile::Outcome AtomicFile::linkInsteadOfRenaming(const std::string& target) {
  // NFS repeats a request whose answer was lost, and then says that the link exists.
  if (::linkat(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target.c_str(), 0) == 0 || isSameFile(temporary_, target)) {
    if (::unlink(temporary_.c_str()) == 0) temporary_.clear();
    return Outcome::kWritten;
  }
  return isNameTaken(target) ? Outcome::kTargetExists : renameOverPlaceholder(target);
}

/// For file systems without links as well: first creates an empty file to reserve the name, then replaces it.
AtomicFile::Outcome AtomicFile::renameOverPlaceholder(const std::string& target) {
  const Descriptor placeholder(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!placeholder.isOpen()) return errno == EEXIST ? Outcome::kTargetExists : fail();
  if (replace(target)) return Outcome::kWritten;
  fail();
  ::unlink(target.c_str());
  return Outcome::kFailed;
}

bool AtomicFile::replace(const std::string& target) {
  const auto renamed = [&] { return std::rename(temporary_.c_str(), target.c_str()) == 0; };
  const bool isReplaced = renamed() || (errno == EISDIR && ::rmdir(target.c_str()) == 0 && renamed());
  if (isReplaced) temporary_.clear();
  return isReplaced;
}

}  // namespace platform
