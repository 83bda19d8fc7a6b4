#include "Platform/System/Folder.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "Platform/System/FileSystem.h"

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

void removeFolder(const std::string& folder) {
  std::vector<std::string> folders = {folder};
  for (std::size_t i = 0; i < folders.size(); ++i) {
    std::string problem;
    for (const FolderEntry& entry : entriesOf(folders[i], problem)) {
      std::string path = appendPathComponent(folders[i], entry.name);
      if (entry.isFolder) {
        folders.push_back(std::move(path));
      } else {
        ::unlink(path.c_str());
      }
    }
  }
  for (; !folders.empty(); folders.pop_back()) ::rmdir(folders.back().c_str());
}

}  // namespace platform
