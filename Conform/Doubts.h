#pragma once

namespace conform {

class Plan;
class Report;

/// Looks through what the export read and warns of everything that it took otherwise than it was perhaps meant: dates
/// and numbers that are not read whole, references to nothing, second ones of what counts once, words that nobody
/// knows, and tasks and resources that no group holds. Changes nothing.
void warnOfDoubts(const Plan& plan, Report& report);

}  // namespace conform
