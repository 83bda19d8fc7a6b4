#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <string_view>

#include "Fuzz/Check.h"
#include "MSPDIExport/MSPDIExport.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/URL.h"
#include "Platform/Text/Texts.h"

inline void checkPath(const std::string& path) {
  const std::string standard = platform::standardizePath(path);
  if (!standard.starts_with('~')) check(platform::standardizePath(standard) == standard, "standard: " + standard);
  check(path.empty() == standard.empty() || path.starts_with('~'), "an empty path, and no other, gives an empty path");
  check(standard.find("//") == std::string::npos, "no double slashes: " + standard);

  const std::string name = platform::lastPathComponent(path);
  check(name == "/" || name.find('/') == std::string::npos, "no slash in a name: " + name);
  const std::string extension = platform::pathExtension(path);
  const std::string stem = platform::deletePathExtension(path);
  if (!extension.empty()) {
    check(name.ends_with("." + extension) && name.size() > extension.size() + 1, "extension of a name: " + extension);
    check((stem + "." + extension + path.substr(stem.size() + extension.size() + 1)) == path,
          "stem and extension: " + stem);
  }
  const std::string folder = platform::deleteLastPathComponent(path);
  if (name != "/" && !standard.starts_with('~') && !path.starts_with('~')) {
    check(platform::standardizePath(platform::appendPathComponent(folder, name)) == standard,
          "folder and name: " + path);
  }

  if (path.find('\0') == std::string::npos && !standard.empty()) {
    const platform::URL url = platform::URL::fileURLWithPath(standard, false);
    check(url.isFileURL(), "a path gives the URL of a file: " + url.absoluteString());
    check(platform::URL(url.absoluteString()).path() == url.path(), "path of the URL: " + url.absoluteString());
  }
}

inline void checkTexts(std::string_view text) {
  std::size_t at = 0;
  for (const std::string_view line : platform::splitAtNewlines(text)) {
    const auto begin = static_cast<std::size_t>(line.data() - text.data());
    check(begin >= at && begin + line.size() <= text.size(), "lines follow each other inside the text");
    check(begin - at <= 3, "only a line break between two lines");
    check(line.find_first_of("\n\v\f\r") == std::string_view::npos, "no newline in a line");
    at = begin + line.size();
  }
  check(at == text.size(), "the last line ends with the text");
  check(platform::isUTF8(platform::asUTF8(text)), "any bytes become UTF-8");
  check(!platform::isUTF8(text) || platform::asUTF8(text) == text, "UTF-8 is not changed");
  const std::string_view trimmed = platform::trimmed(text);
  check(platform::trimmed(trimmed) == trimmed, "a trimmed text stays as it is");
}

/// Runs MSPDIExport on a list of bundles that do not exist. It must write nothing and fail.
inline void runWithList(std::string_view list) {
  const int descriptor = memfd_create("list", MFD_CLOEXEC);
  if (descriptor < 0 || write(descriptor, list.data(), list.size()) != static_cast<ssize_t>(list.size())) return;
  MSPDIExport driver({"MSPDIExport", "--input-list", "/proc/self/fd/" + std::to_string(descriptor)});
  const int status = driver.run();
  close(descriptor);
  check(status == 1, "the run fails, since no bundle exists");
}

/// The input is a list file; each of its lines is also tried as a path.
inline void fuzzDriver(std::string_view input) {
  checkTexts(input);
  for (const std::string_view line : platform::splitAtNewlines(input)) checkPath(std::string(line));
  runWithList(input);
}
