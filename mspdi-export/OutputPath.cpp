#include "mspdi-export/OutputPath.h"

#include "Conform/Failure.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Text/Texts.h"

namespace {

bool hasExtension(const std::string& path, std::string_view extension) {
  return platform::lowercased(platform::pathExtension(path)) == extension;
}

bool isBundle(const std::string& path) { return hasExtension(path, "kvdx") && platform::isDirectory(path); }

void requireBundle(const std::string& path) {
  if (!platform::fileExists(path)) conform::fail("there is no such bundle");
  if (!isBundle(path)) conform::fail("this is no bundle: a folder whose name ends in .kvdx");
}

/// What is put into a bundle is part of the plan, and may be lost at its next saving.
void requireOutside(std::string folder) {
  for (folder = platform::resolvedPath(folder); folder.size() > 1; folder = platform::deleteLastPathComponent(folder)) {
    if (isBundle(folder)) conform::fail("the output would lie inside of the bundle " + folder);
  }
}

}  // namespace

std::string outputPath(const std::string& bundle, const std::string& output) {
  requireBundle(bundle);
  const std::string fileName = platform::deletePathExtension(platform::lastPathComponent(bundle)) + ".xml";
  std::string path = platform::absolutePath(output);
  if (output.empty()) {
    path = platform::appendPathComponent(platform::deleteLastPathComponent(bundle), fileName);
  } else if (platform::isDirectory(path)) {
    path = platform::appendPathComponent(path, fileName);
  } else if (!hasExtension(path, "xml") || output.ends_with('/')) {
    conform::fail("the output is neither a folder nor a name that ends in .xml: " + output);
  }
  const std::string folder = platform::deleteLastPathComponent(path);
  if (!platform::isDirectory(folder)) conform::fail("no folder " + folder);
  requireOutside(folder);
  return path;
}
