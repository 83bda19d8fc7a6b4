#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// One line on a terminal that shows the progress: "[########            ]  40 %  Plan.kvdx". Writes nothing when
/// standard error is not a terminal, and nothing in the first second.
class ProgressBar {
 public:
  /// @param isShown false for a bar that never shows.
  explicit ProgressBar(bool isShown);
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Whether update() shows anything.
  [[nodiscard]] bool isShown() const { return isShown_; }
  /// @param atOnce whether to show the bar even in the first second, as for several bundles.
  void update(std::size_t done, std::size_t total, const std::string& label, bool atOnce = false);
  /// Clears the line, so that something else can be written.
  void clear();

 private:
  bool isShown_;
  bool isOnScreen_ = false;
  std::size_t lastPercent_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};
