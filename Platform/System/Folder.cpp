#include "Platform/System/Folder.h"

#include <filesystem>
#include <system_error>

namespace platform {

std::vector<FolderEntry> entriesOf(const std::string& folder, std::string& problem) {
  std::vector<FolderEntry> entries;
  std::error_code error;
  std::filesystem::directory_iterator at(folder, error);
  const std::filesystem::directory_iterator end;
  for (; !error && at != end; at.increment(error)) {
    std::error_code hidden;
    const auto type = at->symlink_status(hidden).type();
    if (type == std::filesystem::file_type::none)
      problem = hidden.message();  // not for an entry that is gone meanwhile
    entries.push_back({at->path().filename().string(), type == std::filesystem::file_type::directory,
                       type == std::filesystem::file_type::regular});
  }
  if (error) problem = error.message();
  return entries;
}

}  // namespace platform
