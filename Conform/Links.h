#pragma once

namespace conform {

class Copy;

/// Gives a link with missing or empty `LinkLag` a lag of 0. Some readers would take it for a lag that is not a number.
void correctLinks(Copy& copy);

}  // namespace conform
