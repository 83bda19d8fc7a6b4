#pragma once

#include <string>
#include <string_view>

#include "BundleExport/BundleExport.h"
#include "mspdi-export/Bundles.h"

/// The paths of what was written for one bundle, or would have been without --check; empty for what was not.
struct OutputFiles {
  std::string output;
  std::string page;
};

/// The summary of one bundle: "Plan.xml: 67 tasks, 80 links, 12 resources, 85 assignments, 13 calendars, 1 baseline; 3
/// warnings (0.1 s)". With --check: "Plan.xml would be written: ...".
[[nodiscard]] std::string summaryOf(const ExportResult& result, double seconds);

/// How an export ended, for programs: "written", "checked" or "failed".
[[nodiscard]] std::string_view nameOf(ExportResult::Status status);

/// The summary for programs, as one JSON object.
/// @param bundle its path, or that of something else that the object is about.
/// @param status nameOf() its status; "skipped" for what only looks like a bundle.
/// @param files where the file and its page are, or would be. Without an output, the object has null; without a page,
/// it has no such member.
[[nodiscard]] std::string jsonOf(const std::string& bundle, std::string_view status, const ExportResult& result,
                                 const OutputFiles& files, double seconds);
