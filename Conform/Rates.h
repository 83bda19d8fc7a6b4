#pragma once

namespace conform {

class Copy;

/// Makes the rate of a material one for each unit (`StandardRateFormat` 8) instead of each hour.
void correctRates(Copy& copy);

}  // namespace conform
