#include "Platform/System/ZipArchive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale() is POSIX
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "Platform/System/Descriptor.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Folder.h"
#include "Platform/Text/Encodings.h"
#include "Platform/Text/Texts.h"

namespace platform {
namespace {

constexpr std::uint64_t kFreeBytes = std::uint64_t{64} << 20;
constexpr std::uint64_t kMostGrowth = 200;
constexpr std::size_t kMostMembers = 10'000;
constexpr std::size_t kMostFolders = 1000;
constexpr std::ptrdiff_t kMostLevels = 20;
constexpr std::size_t kBlockSize = std::size_t{1} << 16;

using Archive = std::unique_ptr<archive, decltype(&archive_read_free)>;

/// Some of the library's messages end with a line feed.
std::string problemOf(const Archive& archive) {
  const char* text = archive_error_string(archive.get());
  return std::string(text == nullptr ? "the archive is damaged" : trimmed(text));
}

/// The archive's file, as the library reads it. The library takes the members by their places in the file, so once it
/// has found the first one, it goes back only when members share bytes. A small archive could have the same bytes
/// unpacked thousands of times.
class ArchiveFile {
 public:
  explicit ArchiveFile(const std::string& path) : file_(Descriptor::forReading(path)) {}

  [[nodiscard]] const Descriptor& descriptor() const { return file_; }
  /// Gives the archive this file. Returns whether it could be read.
  bool open(const Archive& archive) {
    archive_read_set_callback_data(archive.get(), this);
    archive_read_set_read_callback(archive.get(), &ArchiveFile::read);
    archive_read_set_seek_callback(archive.get(), &ArchiveFile::seek);
    return archive_read_open1(archive.get()) == ARCHIVE_OK;
  }
  void expectOnlyForward() { mayGoBack_ = false; }
  /// Whether the library went back after expectOnlyForward().
  [[nodiscard]] bool wentBack() const { return wentBack_; }

 private:
  static la_ssize_t read(archive* archive, void* data, const void** block) {
    auto& self = *static_cast<ArchiveFile*>(data);
    *block = self.block_.data();
    ssize_t size = -1;
    do {
      size = ::read(self.file_.get(), self.block_.data(), self.block_.size());
    } while (size < 0 && errno == EINTR);
    if (size < 0) archive_set_error(archive, errno, "%s", std::strerror(errno));
    return size;
  }

  static la_int64_t seek(archive* archive, void* data, la_int64_t offset, int whence) {
    auto& self = *static_cast<ArchiveFile*>(data);
    const off_t before = ::lseek(self.file_.get(), 0, SEEK_CUR);
    const off_t at = ::lseek(self.file_.get(), offset, whence);
    if (at < before && !self.mayGoBack_) self.wentBack_ = true;
    if (at < 0) archive_set_error(archive, errno, "%s", std::strerror(errno));
    return at;
  }

  Descriptor file_;
  std::array<char, kBlockSize> block_{};
  bool mayGoBack_ = true;
  bool wentBack_ = false;
};

/// While this object lives, the library reads names in UTF-8. In the "C" locale it gives no name that is not ASCII.
class LocaleOfUTF8 {
 public:
  LocaleOfUTF8() : locale_(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
    if (locale_ != nullptr) before_ = ::uselocale(locale_);
  }
  ~LocaleOfUTF8() {
    if (locale_ == nullptr) return;
    ::uselocale(before_);
    ::freelocale(locale_);
  }
  LocaleOfUTF8(const LocaleOfUTF8&) = delete;
  LocaleOfUTF8& operator=(const LocaleOfUTF8&) = delete;

 private:
  locale_t locale_;
  locale_t before_ = nullptr;
};

/// While this object lives, new files and folders get the permissions that they are made with, whatever the user's
/// umask. With some, this program could not read what it unpacks.
class PrivateMask {
 public:
  PrivateMask() : before_(::umask(0077)) {}
  ~PrivateMask() { ::umask(before_); }
  PrivateMask(const PrivateMask&) = delete;
  PrivateMask& operator=(const PrivateMask&) = delete;

 private:
  mode_t before_;
};

/// What is between the slashes of a path, and before and behind them: at least one part.
std::vector<std::string_view> partsOf(std::string_view path) {
  std::vector<std::string_view> parts;
  for (std::size_t at = 0; at <= path.size(); at += parts.back().size() + 1) {
    parts.push_back(path.substr(at, path.find('/', at) - at));
  }
  return parts;
}

/// A part of a member's path that is not in UTF-8, read as code page 437, in which Windows writes western letters. It
/// is kept as it is when the decoded name would be too long for a file.
std::string decodedPart(std::string_view part) {
  constexpr std::size_t kMostBytes = 255;
  const auto text = decoded(part, "IBM437");
  return text && text->text.size() <= kMostBytes ? text->text : std::string(part);
}

/// The member's path. A name that is not in UTF-8 is guessed.
std::string nameOf(archive_entry* entry, bool& isGuessed) {
  if (const char* name = archive_entry_pathname_utf8(entry)) return name;
  const char* name = archive_entry_pathname(entry);
  if (name == nullptr) return "";
  isGuessed = true;
  std::string text;
  for (const std::string_view part : partsOf(name)) text.append(decodedPart(part)).append("/");
  text.pop_back();
  return text;
}

/// Whether the member stays below the folder that it is unpacked into.
bool staysInside(const std::string& name) {
  if (name.empty() || name.starts_with('/') || name.find('\0') != std::string::npos) return false;
  const auto parts = partsOf(name);
  return std::find(parts.begin(), parts.end(), "..") == parts.end();
}

/// How much the archive may still unpack to. Each operation returns what limit is exceeded; none when all is well.
class Allowance {
 public:
  explicit Allowance(std::uint64_t archiveSize) : bytes_(kFreeBytes + kMostGrowth * archiveSize) {}
  std::optional<std::string> takeBytes(std::uint64_t bytes) {
    if (bytes > bytes_) return fmt::format("it unpacks to more than {} times its size", kMostGrowth);
    bytes_ -= bytes;
    return std::nullopt;
  }
  std::optional<std::string> takeMember() { return takeOne(members_, kMostMembers, "members"); }
  std::optional<std::string> takeFolder() { return takeOne(folders_, kMostFolders, "folders"); }

 private:
  static std::optional<std::string> takeOne(std::size_t& taken, std::size_t most, std::string_view what) {
    if (++taken <= most) return std::nullopt;
    return fmt::format("it has more than {} {}", most, what);
  }

  std::uint64_t bytes_;
  std::size_t members_ = 0;
  std::size_t folders_ = 0;
};

/// Whether the member has only what a Mac knows of another member; "Compress" of its Finder adds these.
bool isMacMetadata(std::string_view name) { return name == "__MACOSX" || name.starts_with("__MACOSX/"); }

/// The reason why the last system call failed. Errors that no name in the archive can cause come from the folder for
/// temporary files.
std::string problemOfCall() {
  constexpr std::array kOfFolder = {ENOSPC, EDQUOT, EFBIG, EACCES, EPERM, EROFS, EIO};
  const int error = errno;
  const bool isOfFolder = std::find(kOfFolder.begin(), kOfFolder.end(), error) != kOfFolder.end();
  return std::strerror(error) + std::string(isOfFolder ? " in the folder for temporary files" : "");
}

/// Creates the folders of a path below an existing folder. They are counted, since two bytes of a name ("a/") are
/// enough for one.
std::optional<std::string> makeFolders(const std::string& below, std::string_view way, Allowance& allowance) {
  for (std::size_t end = 0; end < way.size(); ++end) {
    end = std::min(way.find('/', end), way.size());
    const std::string path = appendPathComponent(below, way.substr(0, end));
    if (::mkdir(path.c_str(), 0700) != 0) {
      if (errno == EEXIST && isDirectory(path)) continue;
      return problemOfCall();
    }
    if (auto problem = allowance.takeFolder()) return problem;
  }
  return std::nullopt;
}

std::optional<std::string> unpackFile(const Archive& archive, const std::string& path, Allowance& allowance) {
  // O_EXCL refuses a name that is in the archive twice, or that a folder has.
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file.isOpen()) return problemOfCall();
  std::optional<std::string> problem;
  std::array<char, kBlockSize> block{};
  while (!problem) {
    const la_ssize_t size = archive_read_data(archive.get(), block.data(), block.size());
    if (size == 0) break;
    problem = size < 0 ? problemOf(archive) : allowance.takeBytes(static_cast<std::uint64_t>(size));
    if (problem) break;
    if (!writeAll(file.get(), {block.data(), static_cast<std::size_t>(size)})) problem = problemOfCall();
  }
  return problem;
}

/// Why the member must not be unpacked; none when it may be.
std::optional<std::string> problemOf(archive_entry* entry, const std::string& name) {
  if (name.empty()) return "the name of a member cannot be read";
  if (!staysInside(name)) return fmt::format("its member '{}' leads out of it", shortened(name));
  if (std::count(name.begin(), name.end(), '/') > kMostLevels) {
    return fmt::format("a member lies more than {} folders deep", kMostLevels);
  }
  const auto type = archive_entry_filetype(entry);
  if (archive_entry_symlink(entry) != nullptr || archive_entry_hardlink(entry) != nullptr ||
      (type != AE_IFREG && type != AE_IFDIR)) {
    return fmt::format("its member '{}' is neither file nor folder", shortened(name));
  }
  return std::nullopt;
}

std::optional<std::string> unpackMember(const Archive& archive, archive_entry* entry, const std::string& name,
                                        const std::string& folder, Allowance& allowance) {
  if (auto problem = problemOf(entry, name)) return problem;
  // With "./" in front, so that a leading "~" does not mean a home folder.
  const std::string way = standardizePath("./" + name);
  const bool isFolder = archive_entry_filetype(entry) == AE_IFDIR;
  auto problem = makeFolders(folder, isFolder ? way : deleteLastPathComponent(way), allowance);
  if (!problem && !isFolder) problem = unpackFile(archive, appendPathComponent(folder, way), allowance);
  if (problem) return fmt::format("member '{}': {}", shortened(name), *problem);
  return std::nullopt;
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  const char* parent = std::getenv("TMPDIR");
  path_ = appendPathComponent(parent == nullptr || *parent == '\0' ? "/tmp" : parent, "mspdi-export-XXXXXX");
  const PrivateMask mask;
  if (::mkdtemp(path_.data()) == nullptr) path_.clear();
}

TemporaryFolder::TemporaryFolder(TemporaryFolder&& other) noexcept : path_(std::exchange(other.path_, {})) {}

TemporaryFolder::~TemporaryFolder() {
  if (!path_.empty()) removeFolder(path_);
}

bool isZipArchive(const std::string& path, std::string& problem) {
  const Descriptor file = Descriptor::forReading(path);
  std::array<char, 4> mark{};
  const ssize_t size = file.isOpen() ? ::read(file.get(), mark.data(), mark.size()) : -1;
  if (size < 0) problem = std::strerror(errno);
  return size == static_cast<ssize_t>(mark.size()) && std::memcmp(mark.data(), "PK\3\4", mark.size()) == 0;
}

std::optional<std::string> unpackZipArchive(const std::string& path, const std::string& folder, bool& guessesNames) {
  const LocaleOfUTF8 locale;
  const PrivateMask mask;
  ArchiveFile file(path);
  struct stat info {};
  if (!file.descriptor().isOpen() || ::fstat(file.descriptor().get(), &info) != 0) return std::strerror(errno);
  // Holes, which take no place, do not count.
  Allowance allowance(file.descriptor().dataSize(static_cast<std::uint64_t>(info.st_size)));
  const Archive archive(archive_read_new(), &archive_read_free);
  // Only by its list of members: without it, a file of a damaged archive could be missing.
  archive_read_support_format_zip_seekable(archive.get());
  if (!file.open(archive)) return problemOf(archive);

  if (::mkdir(folder.c_str(), 0700) != 0) return problemOfCall();
  archive_entry* entry = nullptr;
  for (;;) {
    const int result = archive_read_next_header(archive.get(), &entry);
    if (result == ARCHIVE_EOF) return std::nullopt;
    if (result < ARCHIVE_WARN) return problemOf(archive);
    if (file.wentBack()) return "some of its members share bytes";
    file.expectOnlyForward();
    if (auto problem = allowance.takeMember()) return problem;
    const std::string name = nameOf(entry, guessesNames);
    if (isMacMetadata(name)) continue;
    if (auto problem = unpackMember(archive, entry, name, folder, allowance)) return problem;
  }
}

}  // namespace platform
