#include "Platform/System/NewFile.h"

#include "Platform/System/FileSystem.h"
#include "Platform/System/NumberedPath.h"

namespace platform {

NewFile writeNewFile(const std::string& path, bool replaces, const std::function<void(AtomicFile& file)>& append) {
  using Outcome = AtomicFile::Outcome;
  NumberedPath target(path);
  const auto mayReplace = [&] { return replaces && target.isFirst(); };
  while (mayReplace() ? !canBeReplaced(target.get()) : isNameTaken(target.get())) target.goOn();
  AtomicFile file(target.get());
  append(file);
  Outcome outcome = mayReplace() ? file.commitReplacing(target.get()) : file.commit(target.get());
  while (outcome == Outcome::kTargetExists) {
    // Another program took the name meanwhile, or the system protects the file there.
    target.goOn();
    outcome = file.commit(target.get());
  }
  return {target.get(), outcome == Outcome::kFailed ? file.failureReason() : ""};
}

}  // namespace platform
