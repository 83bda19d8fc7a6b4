#pragma once

#include <string>
#include <vector>

namespace platform {

struct FolderEntry {
  std::string name;
  bool isFolder = false;  ///< a link is neither folder nor file
  bool isFile = false;
};

/// The folder's entries, in no particular order.
/// @param problem set to the reason when not all of them could be read, for example "Permission denied".
[[nodiscard]] std::vector<FolderEntry> entriesOf(const std::string& folder, std::string& problem);

/// Removes the folder and all in it, as far as the system lets it. Has one folder open at a time, so that it works
/// where few files may be open.
void removeFolder(const std::string& folder);

}  // namespace platform
