#pragma once

#include <string>

namespace platform {

/// A path and the names to fall back on when it is taken: "Plan.xml", "Plan-1.xml", "Plan-2.xml" and so on. Does not
/// look at the disk.
class NumberedPath {
 public:
  explicit NumberedPath(std::string path);

  [[nodiscard]] const std::string& get() const { return path_; }
  /// Whether this is still the path as given.
  [[nodiscard]] bool isFirst() const { return number_ == 0; }
  /// Goes on to the next name.
  void goOn();

 private:
  std::string path_;
  std::string stem_;
  std::string extension_;
  long number_ = 0;
};

}  // namespace platform
