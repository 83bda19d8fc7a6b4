#pragma once

#include <functional>
#include <string_view>

#include "Conform/PlanFile.h"

namespace page {

/// Writes one HTML page that shows what a reader of the file sees: the plan as a chart with a table, the resources, the
/// calendars, notes and custom fields. The page loads nothing else. Its fixed parts are the files page.html, page.css
/// and page.js.
/// @param now on the plan's clock, for the line that marks today.
/// @param sink takes the page in UTF-8, piece by piece.
void writePage(const conform::PlanFile& plan, conform::CivilSeconds now,
               const std::function<void(std::string_view)>& sink);

}  // namespace page
