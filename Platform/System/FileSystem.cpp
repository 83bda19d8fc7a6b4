#include "Platform/System/FileSystem.h"

#include <fmt/format.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

namespace platform {
namespace {

/// The path with a leading "~" or "~user" replaced by that home folder; unchanged when there is no such home.
std::string expandTilde(std::string_view path) {
  if (!path.starts_with('~')) return std::string(path);
  const std::size_t nameEnd = std::min(path.find('/'), path.size());
  const std::string user(path.substr(1, nameEnd - 1));
  std::string home;
  if (user.empty()) {
    const char* environment = std::getenv("HOME");
    if (environment != nullptr) home = environment;
  }
  if (home.empty()) {
    const passwd* entry = user.empty() ? getpwuid(getuid()) : getpwnam(user.c_str());
    if (entry == nullptr) return std::string(path);
    home = entry->pw_dir;
  }
  return home + std::string(path.substr(nameEnd));
}

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
  return path;
}

/// Position of the dot before the extension of the last component; npos when it has none.
std::size_t extensionDot(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::size_t nameStart = slash == std::string_view::npos ? 0 : slash + 1;
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || dot <= nameStart || dot + 1 == path.size()) return std::string_view::npos;
  return dot;
}

}  // namespace

std::string standardizePath(std::string_view path) {
  const std::string expanded = expandTilde(path);
  const bool absolute = expanded.starts_with('/');
  std::vector<std::string_view> kept;
  const std::string_view whole(expanded);
  for (std::size_t at = 0; at <= whole.size();) {
    const std::size_t end = std::min(whole.find('/', at), whole.size());
    const std::string_view component = whole.substr(at, end - at);
    at = end + 1;
    if (component.empty() || component == ".") continue;
    if (component == ".." && !kept.empty() && kept.back() != "..") {
      kept.pop_back();
    } else if (component != ".." || !absolute) {
      kept.push_back(component);
    }
  }
  std::string result = absolute ? "/" : "";
  for (const std::string_view component : kept) {
    if (!result.empty() && !result.ends_with('/')) result += '/';
    result += component;
  }
  if (result.empty() && !path.empty()) return ".";  // the current folder is written "."
  return result;
}

std::string absolutePath(std::string_view path) {
  if (path.starts_with('/')) return standardizePath(path);
  const std::unique_ptr<char, decltype(&std::free)> current(::getcwd(nullptr, 0), &std::free);
  if (!current) return std::string(path);
  return standardizePath(appendPathComponent(current.get(), path));
}

std::string lastPathComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos || path == "/") return std::string(path);
  return std::string(path.substr(slash + 1));
}

std::string deleteLastPathComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return "";
  return std::string(slash == 0 ? "/" : withoutTrailingSlashes(path.substr(0, slash)));
}

std::string pathExtension(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const std::size_t dot = extensionDot(path);
  return dot == std::string_view::npos ? "" : std::string(path.substr(dot + 1));
}

std::string deletePathExtension(std::string_view path) {
  path = withoutTrailingSlashes(path);
  return std::string(path.substr(0, extensionDot(path)));
}

std::string appendPathComponent(std::string_view folder, std::string_view name) {
  std::string result(folder);
  if (!result.empty() && !result.ends_with('/')) result += '/';
  return result.append(name);
}

bool fileExists(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

bool mayExist(const std::string& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool isDirectory(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool isNameTaken(const std::string& path) {
  struct stat info {};
  return ::lstat(path.c_str(), &info) == 0;
}

bool canBeReplaced(const std::string& path) {
  struct stat info {};
  std::error_code unreadable;
  return ::lstat(path.c_str(), &info) != 0 || !S_ISDIR(info.st_mode) || std::filesystem::is_empty(path, unreadable);
}

std::string resolvedPath(const std::string& path) {
  std::error_code error;
  const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
  return error ? path : resolved.string();
}

std::string identityOf(const std::string& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return path;
  // A new file may have the number of one that was just removed, but not its time.
  return fmt::format("{} {} {} {}", info.st_dev, info.st_ino, info.st_ctim.tv_sec, info.st_ctim.tv_nsec);
}

std::string pathOfSystem(const std::string& path) {
  if (path.starts_with('~')) return pathOfSystem("./" + path);
  const std::string real = resolvedPath(path);
  if (path.find("..") == std::string::npos || resolvedPath(absolutePath(path)) == absolutePath(real)) return path;
  const std::size_t slash = withoutTrailingSlashes(path).rfind('/');
  const std::string last(withoutTrailingSlashes(path).substr(slash + 1));
  // The last part may itself be a link, which stays.
  return last == ".." ? real : resolvedPath(path.substr(0, slash)) + "/" + last;
}

void deleteItem(const std::string& path) { std::remove(path.c_str()); }

void createDirectories(const std::string& path) {
  std::error_code ignored;
  std::filesystem::create_directories(path, ignored);
}

}  // namespace platform
