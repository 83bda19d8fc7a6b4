#include "BundleExport/OutputPath.h"

#include <fmt/format.h>

#include <vector>

#include "Conform/Failure.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Text/Texts.h"

namespace {

bool hasExtension(const std::string& path, std::string_view extension) {
  return platform::lowercased(platform::pathExtension(path)) == extension;
}

bool isBundle(const std::string& path) { return hasExtension(path, "kvdx") && platform::isDirectory(path); }

/// The folder and those above it.
std::vector<std::string> upwards(std::string folder) {
  std::vector<std::string> folders;
  for (; folder.size() > 1; folder = platform::deleteLastPathComponent(folder)) folders.push_back(folder);
  return folders;
}

void refuse(const std::string& bundle) {
  conform::fail(fmt::format("the output would lie inside of the bundle '{}'", bundle));
}

}  // namespace

void requireOutsideBundles(const std::string& folder) {
  // A bundle's name may be that of a link, or of what a link leads to.
  for (const std::string& path : {platform::absolutePath(folder), platform::resolvedPath(folder)}) {
    for (const std::string& above : upwards(path)) {
      if (isBundle(above)) refuse(above);
    }
  }
}

std::string outputPath(const std::string& bundle, const std::string& defaultFolder, const std::string& baseName,
                       const std::string& output) {
  std::string path = platform::absolutePath(output.empty() ? defaultFolder : output);
  if (output.empty() || platform::isDirectory(path)) {
    path = platform::appendPathComponent(path, baseName + ".xml");
  } else if (!hasExtension(path, "xml") || output.ends_with('/')) {
    conform::fail(fmt::format("the output '{}' is neither an existing folder nor a name that ends in .xml", output));
  }
  const std::string folder = platform::deleteLastPathComponent(path);
  if (!platform::isDirectory(folder)) conform::fail(fmt::format("the folder '{}' does not exist", folder));
  requireOutsideBundles(folder);
  // The bundle itself may have another name.
  const std::string source = platform::resolvedPath(bundle);
  for (const std::string& above : upwards(platform::resolvedPath(folder))) {
    if (above == source) refuse(above);
  }
  return path;
}
