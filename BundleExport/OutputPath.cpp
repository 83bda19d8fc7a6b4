#include "BundleExport/OutputPath.h"

#include <fmt/format.h>

#include "Conform/Failure.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Text/Texts.h"

namespace {

bool hasExtension(const std::string& path, std::string_view extension) {
  return platform::lowercased(platform::pathExtension(path)) == extension;
}

bool isBundle(const std::string& path) { return hasExtension(path, "kvdx") && platform::isDirectory(path); }

/// Refuses a folder inside a bundle: a file there would become part of the plan and may be lost when that is saved. A
/// link to the bundle may have another name, so links are resolved.
void requireOutside(std::string folder, const std::string& bundle) {
  const std::string source = platform::resolvedPath(bundle);
  for (folder = platform::resolvedPath(folder); folder.size() > 1; folder = platform::deleteLastPathComponent(folder)) {
    if (folder == source || isBundle(folder))
      conform::fail(fmt::format("the output would lie inside of the bundle '{}'", folder));
  }
}

}  // namespace

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
  requireOutside(folder, bundle);
  return path;
}
