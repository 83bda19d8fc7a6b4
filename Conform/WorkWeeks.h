#pragma once

namespace conform {

class Copy;

/// A work week names each weekday once; the exporter names it on each of its days. All of them say the same, so that
/// the first stands for the others.
void correctWorkWeeks(Copy& copy);

}  // namespace conform
