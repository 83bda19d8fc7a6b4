#pragma once

#include <memory>
#include <vector>

#include "Platform/XML/XMLTree.h"

namespace conform {

class Plan;
class Report;

/// The compared scenarios whose data is written as baselines; excerpts are enough.
using Baselines = std::vector<std::shared_ptr<xml::Document>>;

/// Warns of everything in the plan and its baselines that the export may have read in another way than it was meant:
/// dates and numbers that were only read in part, references to missing objects, repeated elements of which one counts,
/// unknown words, and tasks and resources that are in no group. Changes nothing.
void warnOfDoubts(const Plan& plan, const Baselines& baselines, Report& report);

}  // namespace conform
