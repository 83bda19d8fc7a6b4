#pragma once

namespace conform {

class Copy;

/// A link without `LinkLag`, or with an empty one, gets a lag of 0: some readers take it for one whose lag is no
/// number.
void correctLinks(Copy& copy);

}  // namespace conform
