#include "Platform/System/NewFile.h"

#include <filesystem>
#include <system_error>

#include "Platform/System/FileSystem.h"
#include "Platform/System/NumberedPath.h"

namespace platform {
namespace {

/// A folder is never replaced, not even an empty one; it is the user's.
bool isFolder(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(std::filesystem::symlink_status(path, ignored));
}

}  // namespace

NewFile writeNewFile(const std::string& path, bool replaces, const std::function<void(AtomicFile& file)>& append) {
  using Outcome = AtomicFile::Outcome;
  NumberedPath target(path);
  const auto mayReplace = [&] { return replaces && target.isFirst(); };
  while (mayReplace() ? isFolder(target.get()) : isNameTaken(target.get())) target.goOn();
  AtomicFile file(target.get());
  append(file);
  Outcome outcome = mayReplace() ? file.commitReplacing(target.get()) : file.commit(target.get());
  while (outcome == Outcome::kTargetExists) {
    // Another program took the name meanwhile, or the system protects the file there.
    target.goOn();
    outcome = file.commit(target.get());
  }
  const bool isElsewhere = replaces && !target.isFirst();
  return {target.get(), outcome == Outcome::kFailed ? file.failureReason() : "", isElsewhere ? path : ""};
}

std::string problemOfNewFile(const std::string& path) {
  const AtomicFile file(path);
  if (!file.failureReason().empty()) return file.failureReason();
  std::error_code error;
  // Only the look-up of a name tells that it is too long.
  const auto status = std::filesystem::symlink_status(path, error);
  return std::filesystem::status_known(status) ? "" : error.message();
}

}  // namespace platform
