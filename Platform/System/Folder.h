#pragma once

#include <string>
#include <vector>

namespace platform {

struct FolderEntry {
  std::string name;
  bool isFolder = false;  ///< a link is neither folder nor file
  bool isFile = false;
};

/// The folder's entries, in no particular order; empty when it cannot be read.
[[nodiscard]] std::vector<FolderEntry> entriesOf(const std::string& folder);

}  // namespace platform
