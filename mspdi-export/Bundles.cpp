#include "mspdi-export/Bundles.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "Platform/System/FileSystem.h"
#include "Platform/System/Folder.h"
#include "Platform/System/ZipArchive.h"
#include "Platform/Text/Texts.h"

namespace {

constexpr const char* kContents = "__TOC.xml";

std::string extensionOf(const std::string& path) { return platform::lowercased(platform::pathExtension(path)); }

bool isBundleFolder(const std::string& path) { return extensionOf(path) == "kvdx" && platform::isDirectory(path); }

bool mayBePacked(const std::string& path) {
  const std::string extension = extensionOf(path);
  return extension == "kvdx" || (extension == "zip" && extensionOf(platform::deletePathExtension(path)) == "kvdx");
}

/// The bundles below the folder, in order of their paths.
std::vector<Bundle> bundlesBelow(const std::string& folder) {
  std::vector<Bundle> bundles;
  std::vector<std::string> waiting = {folder};
  while (!waiting.empty()) {
    const std::string next = std::move(waiting.back());
    waiting.pop_back();
    for (const platform::FolderEntry& entry : platform::entriesOf(next)) {
      const std::string path = platform::appendPathComponent(next, entry.name);
      if (entry.isFolder && extensionOf(path) == "kvdx") {
        bundles.push_back({path, false});
      } else if (entry.isFolder) {
        waiting.push_back(path);
      } else if (entry.isFile && mayBePacked(path) && platform::isZipArchive(path)) {
        bundles.push_back({path, true});
      }
    }
  }
  std::sort(bundles.begin(), bundles.end(), [](const Bundle& a, const Bundle& b) { return a.path < b.path; });
  return bundles;
}

std::string problemOfFile(const std::string& path) {
  if (!platform::mayExist(path)) return fmt::format("'{}' does not exist.", path);
  if (!mayBePacked(path)) return fmt::format("'{}' is no bundle: a bundle is a folder named .kvdx.", path);
  return fmt::format("'{}' is a file, and no zip archive that a bundle could be in. Copy the bundle anew as a folder.",
                     path);
}

}  // namespace

FoundBundles findBundles(const std::vector<std::string>& arguments) {
  FoundBundles found;
  for (const std::string& argument : arguments) {
    if (isBundleFolder(argument)) {
      found.bundles.push_back({argument, false});
    } else if (platform::isDirectory(argument)) {
      const auto below = bundlesBelow(argument);
      if (below.empty())
        found.problems.push_back({argument, fmt::format("There is no bundle in the folder '{}'.", argument)});
      found.bundles.insert(found.bundles.end(), below.begin(), below.end());
    } else if ((mayBePacked(argument) || extensionOf(argument) == "zip") && platform::isZipArchive(argument)) {
      found.bundles.push_back({argument, true});
    } else {
      found.problems.push_back({argument, problemOfFile(argument)});
    }
  }
  return found;
}

std::string baseNameOf(const Bundle& bundle) {
  std::string name = platform::lastPathComponent(bundle.path);
  if (bundle.isPacked && extensionOf(name) == "zip") name = platform::deletePathExtension(name);
  return extensionOf(name) == "kvdx" ? platform::deletePathExtension(name) : name;
}

UnpackedBundle::UnpackedBundle(const Bundle& bundle, const std::string& folder) {
  if (folder.empty()) {
    problem_ = "no folder for temporary files could be made";
    return;
  }
  // The archive may contain the bundle's folder, or only the folder's contents.
  const std::string unpacked = platform::appendPathComponent(folder, "Bundle.kvdx");
  platform::createDirectories(unpacked);
  problem_ = platform::unpackZipArchive(bundle.path, unpacked);
  if (problem_) return;
  path_ = unpacked;
  if (platform::fileExists(platform::appendPathComponent(unpacked, kContents))) return;
  const auto bundles = bundlesBelow(unpacked);
  if (bundles.size() == 1 && !bundles[0].isPacked) {
    path_ = bundles[0].path;
  } else {
    problem_ = fmt::format("it holds {} bundles; one is expected", bundles.size());
  }
}
