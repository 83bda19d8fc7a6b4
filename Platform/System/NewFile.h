#pragma once

#include <functional>
#include <string>

#include "Platform/System/AtomicFile.h"

namespace platform {

/// The result of writing a file.
struct NewFile {
  std::string path;     ///< the file's name, or the one it should have got
  std::string failure;  ///< why it was not written; empty when it was
  std::string kept;     ///< what should have been replaced, and could not be; empty in all other cases
};

/// Writes a whole file to the path; when that is taken, to the first free path that NumberedPath gives.
/// @param replaces whether a file at the path itself may be replaced. One that the system protects, or a folder that is
/// not empty, never is.
/// @param append called once to append the contents.
[[nodiscard]] NewFile writeNewFile(const std::string& path, bool replaces,
                                   const std::function<void(AtomicFile& file)>& append);

/// Why a file of this name cannot be written; empty when it can. Leaves nothing behind.
[[nodiscard]] std::string problemOfNewFile(const std::string& path);

}  // namespace platform
