#include "mspdi-export/Bundles.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

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

std::string unreadable(const std::string& path, const std::string& problem) {
  return fmt::format("'{}' could not be read: {}.", path, problem);
}

void take(const std::string& path, const platform::FolderEntry& entry, FoundBundles& found) {
  std::string problem;
  if (entry.isFolder) {
    found.bundles.push_back({path, false});
  } else if (entry.isFile && platform::isZipArchive(path, problem)) {
    found.bundles.push_back({path, true});
  } else if (!problem.empty()) {
    found.problems.push_back({path, unreadable(path, problem)});
  } else {
    const char* reason = entry.isFile ? "no folder and no zip archive" : "a link, or something else than a file";
    found.passedOver.push_back({path, fmt::format("'{}' is passed over: {}.", path, reason)});
  }
}

/// What is below the folder; the bundles in order of their paths.
FoundBundles bundlesBelow(const std::string& folder) {
  FoundBundles found;
  std::vector<std::string> waiting = {folder};
  while (!waiting.empty()) {
    const std::string next = std::move(waiting.back());
    waiting.pop_back();
    std::string problem;
    for (const platform::FolderEntry& entry : platform::entriesOf(next, problem)) {
      const std::string path = platform::appendPathComponent(next, entry.name);
      if (entry.isFolder && extensionOf(path) != "kvdx") {
        waiting.push_back(path);
      } else if (mayBePacked(path)) {
        take(path, entry, found);
      }
    }
    if (!problem.empty()) {
      found.problems.push_back({next, fmt::format("The folder {}", unreadable(next, problem))});
    }
  }
  const auto byPath = [](const auto& a, const auto& b) { return a.path < b.path; };
  std::sort(found.bundles.begin(), found.bundles.end(), byPath);
  std::sort(found.passedOver.begin(), found.passedOver.end(), byPath);
  return found;
}

void append(FoundBundles& to, FoundBundles more) {
  const auto move = [](auto& list, auto& from) {
    list.insert(list.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
  };
  move(to.bundles, more.bundles);
  move(to.problems, more.problems);
  move(to.passedOver, more.passedOver);
}

std::string problemOfFile(const std::string& path, const std::string& problem) {
  if (!platform::mayExist(path)) return fmt::format("'{}' does not exist.", path);
  if (!problem.empty()) return unreadable(path, problem);
  if (!mayBePacked(path)) return fmt::format("'{}' is no bundle: a bundle is a folder named .kvdx.", path);
  return fmt::format("'{}' is a file, and no zip archive that a bundle could be in. Copy the bundle anew as a folder.",
                     path);
}

}  // namespace

FoundBundles findBundles(const std::vector<std::string>& arguments) {
  FoundBundles found;
  for (const std::string& argument : arguments) {
    std::string problem;
    if (isBundleFolder(argument)) {
      found.bundles.push_back({argument, false});
    } else if (platform::isDirectory(argument)) {
      FoundBundles below = bundlesBelow(argument);
      if (below.bundles.empty() && below.problems.empty()) {
        below.problems.push_back({argument, fmt::format("There is no bundle in the folder '{}'.", argument)});
      }
      append(found, std::move(below));
    } else if ((mayBePacked(argument) || extensionOf(argument) == "zip") && platform::isZipArchive(argument, problem)) {
      found.bundles.push_back({argument, true});
    } else {
      found.problems.push_back({argument, problemOfFile(argument, problem)});
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
  problem_ = platform::unpackZipArchive(bundle.path, unpacked, guessesNames_);
  if (problem_) return;
  auto bundles = bundlesBelow(unpacked).bundles;
  std::erase_if(bundles, [](const Bundle& below) { return below.isPacked; });
  if (platform::fileExists(platform::appendPathComponent(unpacked, kContents))) bundles.push_back({unpacked, false});
  if (bundles.size() == 1) {
    path_ = bundles[0].path;
  } else {
    problem_ = fmt::format("it holds {} bundles; one is expected", bundles.size());
  }
}
