#pragma once

namespace conform {

class Copy;

/// Gives a link with missing or empty `LinkLag` a lag of 0. Some readers would take it for a lag that is not a number.
/// With the bundle, also rounds lags that are percentages: the exporter writes 28 for a `lead-time` of 0.29.
void correctLinks(Copy& copy);

}  // namespace conform
