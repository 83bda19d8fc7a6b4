#pragma once

#include <string>

/// Refuses a folder that is a bundle or inside one: a file there would become part of the plan, and may be lost when
/// that is saved.
/// @throws platform::Exception with a reason for people.
void requireOutsideBundles(const std::string& folder);

/// The path for the exported file, before any numbering: the output itself; a file in it when it is a folder; a file in
/// the default folder when it is empty.
/// @param bundle the bundle's folder. @param baseName the file's name without its extension. @param output a file that
/// ends in ".xml", an existing folder, or empty.
/// @throws platform::Exception with a reason for people when the output cannot be made, or would be inside a bundle.
[[nodiscard]] std::string outputPath(const std::string& bundle, const std::string& defaultFolder,
                                     const std::string& baseName, const std::string& output);
