#pragma once

#include <string>
#include <string_view>

namespace platform {

// Paths as texts. None of these looks at the disk.

/// The path with a leading "~" or "~user" replaced by that home folder, and without ".", "..", doubled and trailing
/// slashes. Works on the text alone: symbolic links are not followed. A leading ".." of a relative path stays; the
/// current folder is ".": "a/../b//c/" gives "b/c", "../x" stays, "a/.." gives ".".
[[nodiscard]] std::string standardizePath(std::string_view path);
/// The standardized path, with the current directory in front unless it begins with "/". When the current directory was
/// deleted, the path stays relative.
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
/// Whether anything may be at the path. True also for a dangling link, and for a path in a folder that may not be
/// searched.
[[nodiscard]] bool mayExist(const std::string& path);
[[nodiscard]] bool isDirectory(const std::string& path);
/// Whether the name is in use, even by a dangling link.
[[nodiscard]] bool isNameTaken(const std::string& path);
/// Whether a file can be written to the path: nothing is there, or a file, a link or an empty folder.
[[nodiscard]] bool canBeReplaced(const std::string& path);
/// The path with its symbolic links resolved as far as it exists; the path itself when links run in a circle.
[[nodiscard]] std::string resolvedPath(const std::string& path);
/// A text that is the same for each path of an existing file, also for hard links to it, while the file is not changed;
/// the path itself when there is no file.
[[nodiscard]] std::string identityOf(const std::string& path);
/// A path that the operations on texts above read as the system reads the given one: for the system, "~" is the name of
/// a file, and the ".." in "link/../x" leads to the folder that holds the link's target. Other paths stay as they are.
[[nodiscard]] std::string pathOfSystem(const std::string& path);
/// Deletes the file, link or empty folder at the path. A folder that is not empty is left alone.
void deleteItem(const std::string& path);
/// Creates the folder and any missing folders above it.
void createDirectories(const std::string& path);

}  // namespace platform
