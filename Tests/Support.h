#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/System/Exceptions.h"
#include "Platform/XML/XMLTree.h"

/// Sets an environment variable, or unsets it if there is no value. The destructor restores it.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::optional<std::string>& value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  std::string name_;
  std::optional<std::string> before_;
};

/// Sets the system time zone. The destructor restores it.
class PinnedZone {
 public:
  explicit PinnedZone(const std::string& name);
  ~PinnedZone();
  PinnedZone(const PinnedZone&) = delete;
  PinnedZone& operator=(const PinnedZone&) = delete;

 private:
  ScopedVariable variable_;
};

/// The text of a document that was read or made.
template <typename Document>
std::string written(const Document& document) {
  std::string text;
  document.serialize([&text](std::string_view piece) { text += piece; });
  return text;
}
/// Parses the text; fails the test when it is no document.
std::shared_ptr<xml::Document> parsed(std::string_view text);

/// The reason of the exception that the action raises; "" when it raises none.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const platform::Exception& exception) {
    return exception.reason();
  }
  return "";
}

/// A new, empty folder. The destructor removes it with its contents.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  /// The path of a file in the folder.
  [[nodiscard]] std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

/// The text, so many times in a row.
std::string repeated(std::string_view text, int times);
/// The texts that the format makes of 0, 1 and so on, up to this many.
std::string numbered(std::string_view format, int times);

/// Writes a file, and creates its folders if they are missing.
void writeFile(const std::string& path, std::string_view contents);
/// Reads a file; fails the test when it cannot.
std::string contentsOf(const std::string& path);
