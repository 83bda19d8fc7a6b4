#include "Platform/System/NewFile.h"

#include <filesystem>
#include <system_error>

#include "Platform/System/FileSystem.h"
#include "Platform/System/NumberedPath.h"

namespace platform {
namespace {

using Append = std::function<void(AtomicFile& file)>;

constexpr const char* kIsFolder = "A folder has this name";

/// A folder is never replaced, not even an empty one; it is the user's.
bool isFolder(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(std::filesystem::symlink_status(path, ignored));
}

NewFile writeOver(const std::string& path, const Append& append) {
  if (isFolder(path)) return {path, kIsFolder};
  AtomicFile file(path);
  append(file);
  // Tries without replacing first, because that needs no temporary name. In an append-only folder, that name could not
  // be removed.
  AtomicFile::Outcome outcome = file.commit(path);
  if (outcome == AtomicFile::Outcome::kTargetExists) outcome = file.commitReplacing(path);
  switch (outcome) {
    case AtomicFile::Outcome::kWritten:
      return {path, ""};
    case AtomicFile::Outcome::kTargetExists:
      return {path, "The file that has this name is protected"};
    default:
      return {path, file.failureReason()};
  }
}

NewFile writeBeside(const std::string& path, const Append& append) {
  NumberedPath target(path);
  while (isNameTaken(target.get())) target.goOn();
  AtomicFile file(target.get());
  append(file);
  AtomicFile::Outcome outcome = file.commit(target.get());
  while (outcome == AtomicFile::Outcome::kTargetExists) {  // another program took the name meanwhile
    target.goOn();
    outcome = file.commit(target.get());
  }
  return {target.get(), outcome == AtomicFile::Outcome::kFailed ? file.failureReason() : ""};
}

}  // namespace

NewFile writeNewFile(const std::string& path, bool replaces, const std::function<void(AtomicFile& file)>& append) {
  return replaces ? writeOver(path, append) : writeBeside(path, append);
}

std::string problemOfNewFile(const std::string& path, bool replaces) {
  if (replaces && isFolder(path)) return kIsFolder;
  const AtomicFile file(path);
  if (!file.failureReason().empty()) return file.failureReason();
  std::error_code error;
  // Only the look-up of a name tells that it is too long.
  const auto status = std::filesystem::symlink_status(path, error);
  return std::filesystem::status_known(status) ? "" : error.message();
}

}  // namespace platform
