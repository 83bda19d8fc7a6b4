#pragma once

#include <functional>
#include <string_view>

#include "Conform/FileCalendars.h"
#include "Conform/PlanFile.h"

namespace page {

/// The rows of the table of resources.
void writeResources(const conform::PlanFile& plan, const conform::FileCalendars& calendars,
                    const std::function<void(std::string_view)>& sink);

}  // namespace page
