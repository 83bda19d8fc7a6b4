#pragma once

namespace conform {

class Copy;

/// Keeps one entry for each weekday of a work week. The exporter writes one for each day; all entries of a weekday are
/// equal, so the first is kept.
void correctWorkWeeks(Copy& copy);

}  // namespace conform
