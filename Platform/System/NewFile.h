#pragma once

#include <functional>
#include <string>

#include "Platform/System/AtomicFile.h"

namespace platform {

/// The result of writing a file.
struct NewFile {
  std::string path;     ///< the file's name, or the one it should have got
  std::string failure;  ///< why it was not written; empty when it was
};

/// Writes a whole file to the path; when that is taken, to the first free path that NumberedPath gives.
/// @param replaces replaces a file at the path instead. A folder is never replaced: that is a failure, as is a file
/// that the system protects. There is no other name then, because it could be the path of another file of the same run.
/// @param append called at most once, to append the contents.
[[nodiscard]] NewFile writeNewFile(const std::string& path, bool replaces,
                                   const std::function<void(AtomicFile& file)>& append);

/// Why a file of this name cannot be written; empty when it can. Leaves nothing behind.
[[nodiscard]] std::string problemOfNewFile(const std::string& path, bool replaces);

}  // namespace platform
