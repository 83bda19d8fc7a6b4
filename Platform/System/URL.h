#pragma once

#include <string>
#include <string_view>

namespace platform {

/// The location of something, as a file URL or another one.
class URL {
 public:
  /// A location given as the text of a URL: "file:///plans/Plan.kvdx/". The host may be "localhost", in any case.
  explicit URL(std::string_view text);
  /// The location of a path; a relative path starts at the current directory.
  static URL fileURLWithPath(std::string_view path, bool isDirectory);

  /// Whether this is a location in this machine's file system; a file URL of another host is not.
  [[nodiscard]] bool isFileURL() const { return isFileURL_; }
  /// The absolute path, without a trailing slash and not percent-encoded; empty when this is no file URL.
  [[nodiscard]] const std::string& path() const { return path_; }
  /// The text, percent-encoded; a directory's ends in "/".
  [[nodiscard]] const std::string& absoluteString() const { return text_; }

 private:
  std::string text_;
  std::string path_;
  bool isFileURL_ = false;
};

}  // namespace platform
