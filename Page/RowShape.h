#pragma once

#include <string>

// The measures of a chart's row, shared by everything that draws in it. In path data, capital H and M mark moments,
// whose places the script stretches when the reader zooms; small letters mark shapes, which keep their size.

namespace page {

inline constexpr int kRowHeight = 28;
inline constexpr int kBarTop = 7;
inline constexpr int kBarBottom = 19;
inline constexpr int kMiddle = 13;

/// A place in the chart, written with at most one decimal.
[[nodiscard]] std::string number(double x);

}  // namespace page
