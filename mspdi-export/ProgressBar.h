#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// One line on a terminal that says how far the work is: "[########            ]  40 %  Plan.kvdx". Nothing is written
/// when standard error is no terminal, or before the work has taken a second.
class ProgressBar {
 public:
  /// @param isShown false for a bar that never shows.
  explicit ProgressBar(bool isShown);
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// @param atOnce show the bar also in the first second, as when there are several bundles.
  void update(std::size_t done, std::size_t total, const std::string& label, bool atOnce = false);
  /// Takes the line away, so that something else can be written.
  void clear();

 private:
  bool isShown_;
  bool isOnScreen_ = false;
  std::size_t lastPercent_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};
