#pragma once

namespace conform {

class Copy;

/// The rate of a material is by its unit (`StandardRateFormat` 8), not by the hour.
void correctRates(Copy& copy);

}  // namespace conform
