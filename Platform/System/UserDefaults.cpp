#include "Platform/System/UserDefaults.h"

#include <toml++/toml.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "Platform/System/FileReading.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"

namespace platform {
namespace {

/// The folder of the settings files; none when the environment sets neither XDG_CONFIG_HOME nor HOME.
std::optional<std::string> settingsFolder() {
  // By convention, a relative path in XDG_CONFIG_HOME is ignored.
  if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder != nullptr && folder[0] == '/') return folder;
  if (const char* home = std::getenv("HOME"); home != nullptr && home[0] != '\0') return std::string(home) + "/.config";
  return std::nullopt;
}

std::optional<std::string> asText(const toml::node& value) {
  if (const auto* boolean = value.as_boolean()) return boolean->get() ? "true" : "false";
  if (const auto* integer = value.as_integer()) return integer->get() != 0 ? "true" : "false";
  if (const auto* number = value.as_floating_point()) return number->get() != 0 ? "true" : "false";
  if (const auto* text = value.as_string()) return text->get();
  return std::nullopt;
}

/// The file's text; none, with the reason in `problem`, when it cannot be read or parsing it could overflow the stack.
std::optional<std::string> readSettings(const std::string& path, std::string& problem) {
  constexpr std::uint64_t kLargestFile = 1 << 20;
  auto contents = readFile(path, kLargestFile, &problem);
  // The library limits the nesting of values but not of tables, and deletes nested tables recursively: too many
  // overflow the stack. Each level of nesting needs a ".", "[" or "{" in the file, so counting these bounds it.
  constexpr std::ptrdiff_t kMostLevels = 200;
  const auto opensLevel = [](char c) { return c == '.' || c == '[' || c == '{'; };
  if (contents && std::count_if(contents->begin(), contents->end(), opensLevel) > kMostLevels) {
    problem = fmt::format("More than {} dots and opening brackets", kMostLevels);
    contents.reset();
  }
  return contents;
}

}  // namespace

std::map<std::string, std::string> UserDefaults::persistentDomain(std::string_view domain) {
  std::map<std::string, std::string> values;
  const auto folder = settingsFolder();
  if (!folder) return values;
  const std::string path = appendPathComponent(*folder, std::string(domain) + ".toml");
  if (!mayExist(path)) return values;

  std::string problem;
  const auto contents = readSettings(path, problem);
  if (!contents) {
    log("WARNING: Settings file '{}' could not be read: {}. Default settings are used.", path, problem);
    return values;
  }
  try {
    for (const auto& [key, value] : toml::parse(*contents, path)) {
      if (auto text = asText(value)) values.emplace(std::string(key.str()), std::move(*text));
    }
  } catch (const toml::parse_error& error) {
    std::string reason(error.description());  // may quote a line break from the file
    std::replace_if(
        reason.begin(), reason.end(), [](unsigned char c) { return c < ' '; }, ' ');
    log("WARNING: Settings file '{}' is malformed at line {}, column {}: {}. "
        "Default settings are used.",
        path, error.source().begin.line, error.source().begin.column, reason);
    values.clear();
  }
  return values;
}

}  // namespace platform
