#pragma once

#include <string>

/// Where the exported file is to be, before any numbering: beside the bundle when nothing is said, in the folder when
/// the output is one, else the output itself.
/// @param bundle path of the bundle's folder, absolute. @param output a file that ends in ".xml", an existing folder,
/// or empty.
/// @throws platform::Exception with a reason for people: the bundle is none, the output is no file that can be made, or
/// it would lie inside of a bundle.
[[nodiscard]] std::string outputPath(const std::string& bundle, const std::string& output);
