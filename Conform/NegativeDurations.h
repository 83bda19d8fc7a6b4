#pragma once

namespace conform {

class Copy;

/// Replaces durations with negative parts, such as "PT-24H0M0S", which are no durations of XML, by "PT0H0M0S". Warns of
/// each task and assignment that has one.
void correctNegativeDurations(Copy& copy);

}  // namespace conform
