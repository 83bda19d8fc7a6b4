#pragma once

#include <string>
#include <vector>

namespace platform {

struct FolderEntry {
  std::string name;
  bool isFolder = false;  ///< a link is neither folder nor file
  bool isFile = false;
};

/// What is in the folder, in no order; nothing when it cannot be read.
[[nodiscard]] std::vector<FolderEntry> entriesOf(const std::string& folder);

}  // namespace platform
