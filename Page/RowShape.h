#pragma once

#include <string>

// The measures of a chart's row, which all that draws in it share. In path data, capital H and M carry moments, which
// the script stretches when the reader zooms; small letters carry shapes, which keep their size.

namespace page {

inline constexpr int kRowHeight = 28;
inline constexpr int kBarTop = 7;
inline constexpr int kBarBottom = 19;
inline constexpr int kMiddle = 13;

/// A place in the chart with one decimal at most.
[[nodiscard]] std::string number(double x);

}  // namespace page
