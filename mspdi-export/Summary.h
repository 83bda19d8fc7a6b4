#pragma once

#include <string>

#include "BundleExport/BundleExport.h"
#include "mspdi-export/Bundles.h"

/// The summary of one bundle: "Plan.xml: 67 tasks, 80 links, 12 resources, 85 assignments, 13 calendars, 1 baseline; 3
/// warnings (0.1 s)". With --check: "Plan.xml would be written: ...".
[[nodiscard]] std::string summaryOf(const ExportResult& result, double seconds);

/// The same for programs, as one JSON object.
/// @param bundle its path, or the argument for which there is no bundle.
/// @param page path of the file's page; left out of the object when empty.
[[nodiscard]] std::string jsonOf(const std::string& bundle, const ExportResult& result, const std::string& page,
                                 double seconds);
