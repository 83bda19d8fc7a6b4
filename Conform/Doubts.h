#pragma once

namespace conform {

class Plan;
class Report;

/// Warns of everything in the plan that the export may have read in another way than it was meant: dates and numbers
/// that were only read in part, references to missing objects, repeated elements of which one counts, unknown words,
/// and tasks and resources that are in no group. Changes nothing.
void warnOfDoubts(const Plan& plan, Report& report);

}  // namespace conform
