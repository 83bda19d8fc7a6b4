#pragma once

#include <string>
#include <string_view>

namespace platform {

// Paths as texts. None of these looks at the disk.

/// The path with a leading "~" or "~user" replaced by that home, and without ".", "..", doubled and trailing slashes.
/// Works on the text alone (symbolic links are not followed); a leading ".." of a relative path stays, and the current
/// folder is ".".
[[nodiscard]] std::string standardizePath(std::string_view path);
/// The path itself when it begins with "/", otherwise the current directory's path and it, standardized. When the
/// current directory is gone, the path stays relative.
[[nodiscard]] std::string absolutePath(std::string_view path);
/// What follows the last slash; trailing slashes do not count.
[[nodiscard]] std::string lastPathComponent(std::string_view path);
/// What precedes the last component: "" for a bare name, "/" for a name in the root.
[[nodiscard]] std::string deleteLastPathComponent(std::string_view path);
/// What follows the last dot of the last component, the dot excluded; empty when there is none, or when nothing
/// precedes it (".kvdx" is a hidden file without an extension).
[[nodiscard]] std::string pathExtension(std::string_view path);
/// The path without its extension and the dot.
[[nodiscard]] std::string deletePathExtension(std::string_view path);
[[nodiscard]] std::string appendPathComponent(std::string_view folder, std::string_view name);

// The disk.

/// Whether anything is at the path (symbolic links are followed).
[[nodiscard]] bool fileExists(const std::string& path);
/// Whether anything, be it a dangling link or in a folder that cannot be looked into, may be at the path.
[[nodiscard]] bool mayExist(const std::string& path);
[[nodiscard]] bool isDirectory(const std::string& path);
/// Whether the name is in use, be it by a link that leads nowhere.
[[nodiscard]] bool isNameTaken(const std::string& path);
/// Whether a file can take the path: when there is nothing, a file, a link or an empty folder.
[[nodiscard]] bool canBeReplaced(const std::string& path);
/// The path with its symbolic links resolved, as far as it exists; the path itself when they run in a circle.
[[nodiscard]] std::string resolvedPath(const std::string& path);
/// Deletes the file, link or empty folder at the path. A folder with something in it is left alone.
void deleteItem(const std::string& path);
/// Makes the folder and those above it that are missing.
void createDirectories(const std::string& path);

}  // namespace platform
