#include "Platform/System/Folder.h"

#include <filesystem>
#include <system_error>

namespace platform {

std::vector<FolderEntry> entriesOf(const std::string& folder) {
  std::vector<FolderEntry> entries;
  std::error_code problem;
  std::filesystem::directory_iterator at(folder, problem);
  const std::filesystem::directory_iterator end;
  for (; !problem && at != end; at.increment(problem)) {
    std::error_code ignored;
    const auto type = at->symlink_status(ignored).type();
    entries.push_back({at->path().filename().string(), type == std::filesystem::file_type::directory,
                       type == std::filesystem::file_type::regular});
  }
  return entries;
}

}  // namespace platform
