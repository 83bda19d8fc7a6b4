#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/System/Exceptions.h"
#include "Platform/XML/XMLTree.h"

/// An environment variable set for a test's length; none unsets it.
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

/// The system time zone for a test's length.
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
/// A document of the text; fails the test when it is none.
std::shared_ptr<xml::Document> parsed(std::string_view text);

/// The reason of the invariant that the action fails; "" when it raises nothing.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const platform::Exception& exception) {
    return exception.reason();
  }
  return "";
}

/// A folder of its own for a test, removed with all it holds.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  /// Path of a name in the folder.
  [[nodiscard]] std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

/// Writes a file, making its folders.
void writeFile(const std::string& path, std::string_view contents);
/// Reads a file; fails the test when it cannot.
std::string contentsOf(const std::string& path);
