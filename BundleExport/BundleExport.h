#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What to export, and how.
struct ExportRequest {
  std::string bundle;         ///< path of the bundle's folder
  std::string baseName;       ///< names the file, and the project when the plan has no title
  std::string defaultFolder;  ///< where the file is written when `output` is empty
  std::string output;         ///< a file that ends in ".xml", an existing folder, or empty
  std::string zone;           ///< as in TZ; "machine" for this machine's; empty to find it from the plan's dates
  std::string currency;       ///< ISO 4217 code to use when the plan's symbol does not determine one; may be empty
  bool overwrite = false;  ///< replace the file of that name, or fail; otherwise the new one is numbered: "Plan-1.xml"
  bool keepDates = false;  ///< schedule every task by hand, so that no reader moves it
  bool check = false;      ///< write nothing
  bool strict = false;     ///< write nothing when there is a warning
  std::function<void(std::string_view record)> log;  ///< receives each record of the exporter's log; may be empty
};

/// The result of the export.
struct ExportResult {
  enum class Status { kWritten, kChecked, kFailed };

  Status status = Status::kFailed;
  std::string path;                   ///< of the file that was written, or would have been
  std::string reason;                 ///< why it failed, for people, without a full stop
  std::string zone;                   ///< the dates are wall-clock times of this zone: "Europe/Berlin"
  std::string zoneSentence;           ///< for people; empty when the zone is this machine's
  std::vector<std::string> warnings;  ///< sentences for people, without a full stop, in the order in which they arose
  std::map<std::string, std::size_t> corrections;  ///< what was corrected, and how often: "links without a lag", 80
  std::size_t tasks = 0;
  std::size_t links = 0;
  std::size_t resources = 0;  ///< without the nameless first one, which nothing refers to
  std::size_t assignments = 0;
  std::size_t calendars = 0;
  std::size_t baselines = 0;
};

/// Exports one bundle to a file to send: makes the exact document in memory, corrects it, and writes it to a file that
/// nobody sees before it is complete.
///
/// Call it only once in a process, from one thread: the exporter's numbering, the time zone and the log's sink belong
/// to the process. To export several bundles, start a new process for each.
///
/// Throws nothing. Any failure, including lack of memory (std::bad_alloc), is reported in the result's reason, and then
/// no file is left.
///
///     ExportRequest request;
///     request.bundle = "/plans/House.kvdx";
///     request.baseName = "House";
///     request.defaultFolder = "/plans";
///     const ExportResult result = exportBundle(request);  // result.path is /plans/House.xml, or House-1.xml
[[nodiscard]] ExportResult exportBundle(const ExportRequest& request);
