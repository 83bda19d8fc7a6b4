#pragma once

#include <functional>
#include <string>

#include "Platform/System/AtomicFile.h"

namespace platform {

/// What became of a file that was to be written.
struct NewFile {
  std::string path;     ///< the name that it has, or was to have
  std::string failure;  ///< why it was not written; empty when it was
};

/// Writes a whole file of the path's name; when that is taken, of the first free name that NumberedPath gives.
/// @param replaces whether a file with the very path is replaced. One that the system protects, or a folder with
/// something in it, never is. @param append appends what is to be in the file.
[[nodiscard]] NewFile writeNewFile(const std::string& path, bool replaces,
                                   const std::function<void(AtomicFile& file)>& append);

}  // namespace platform
