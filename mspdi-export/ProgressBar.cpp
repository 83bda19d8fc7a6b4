#include "mspdi-export/ProgressBar.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>

#include "Platform/System/Console.h"
#include "Platform/Text/Texts.h"

ProgressBar::ProgressBar(bool isShown) : isShown_(isShown && ::isatty(STDERR_FILENO) == 1) {}

void ProgressBar::update(std::size_t done, std::size_t total, const std::string& label, bool atOnce) {
  if (!isShown_ || total == 0) return;
  const std::size_t percent = std::min<std::size_t>(done * 100 / total, 100);
  if (isOnScreen_ && percent == lastPercent_)
    return;  // redraw only when the percentage changes, since a percent can be thousands of tasks
  if (!atOnce && std::chrono::steady_clock::now() - start_ < std::chrono::seconds(1)) return;
  constexpr std::size_t kWidth = 24;
  const std::size_t filled = percent * kWidth / 100;
  platform::writeToStandardError(fmt::format("\r\x1b[K[{}{}] {:3} %  {}", std::string(filled, '#'),
                                             std::string(kWidth - filled, ' '), percent, platform::printable(label)));
  isOnScreen_ = true;
  lastPercent_ = percent;
}

void ProgressBar::clear() {
  if (!isOnScreen_) return;
  platform::writeToStandardError("\r\x1b[K");
  isOnScreen_ = false;
}
