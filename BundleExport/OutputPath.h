#pragma once

#include <string>

/// Where the exported file is to be, before any numbering: in the default folder when nothing is said, in the folder
/// when the output is one, else the output itself.
/// @param bundle the bundle's folder. @param baseName the file's name without its extension. @param output a file that
/// ends in ".xml", an existing folder, or empty.
/// @throws platform::Exception with a reason for people: the output is no file that can be made, or it would lie inside
/// of a bundle.
[[nodiscard]] std::string outputPath(const std::string& bundle, const std::string& defaultFolder,
                                     const std::string& baseName, const std::string& output);
