#pragma once

#include <string>

#include "BundleExport/BundleExport.h"
#include "mspdi-export/Bundles.h"

/// What is said of one bundle: "Plan.xml: 67 tasks, 80 links, 12 resources, 85 assignments, 13 calendars, 1 baseline;
/// 3 warnings (0.1 s)". Of a check: "Plan.xml would be written: ...".
[[nodiscard]] std::string summaryOf(const ExportResult& result, double seconds);

/// The same for programs, as one JSON object.
/// @param bundle its path, or the argument that leads to none.
/// @param page path of the page that shows the file; empty when there is none, and not told then.
[[nodiscard]] std::string jsonOf(const std::string& bundle, const ExportResult& result, const std::string& page,
                                 double seconds);
