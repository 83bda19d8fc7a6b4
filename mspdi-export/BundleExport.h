#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/Copy.h"
#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"

/// What is to become of one bundle.
struct ExportRequest {
  std::string bundle;         ///< path of the bundle's folder
  std::string baseName;       ///< names the file and a project without a title
  std::string defaultFolder;  ///< where the file is written when `output` is empty
  std::string output;         ///< a file that ends in ".xml", an existing folder, or empty
  std::string zone;           ///< as chooseZone() takes it
  std::string currency;       ///< ISO 4217 code; empty when not given
  bool overwrite = false;
  bool keepDates = false;
  bool check = false;                                ///< write nothing
  bool strict = false;                               ///< write nothing when there is a warning
  std::function<void(std::string_view record)> log;  ///< gets each record of the exporter's log; may be empty
};

/// What became of it.
struct ExportResult {
  enum class Status { kWritten, kChecked, kFailed };

  Status status = Status::kFailed;
  std::string path;    ///< of the file that was written, or would have been
  std::string reason;  ///< why it failed, for people, without a full stop
  std::string zone;
  std::string zoneSentence;           ///< for people; empty when the zone is this machine's
  std::vector<std::string> warnings;  ///< sentences for people, without a full stop
  std::size_t tasks = 0;
  std::size_t links = 0;
  std::size_t resources = 0;  ///< without the placeholder
  std::size_t assignments = 0;
  std::size_t calendars = 0;
  std::size_t baselines = 0;
};

/// One bundle on its way to the file that one sends: exported in memory as MSPDIExport does it, corrected, written.
/// Numbers, and the time zone, belong to the process: one bundle a process, in one thread. Lack of memory ends the
/// process with std::bad_alloc unless the caller catches it; no file is left then.
class BundleExport {
 public:
  explicit BundleExport(ExportRequest request) : request_(std::move(request)) {}

  /// Exports to a file that nobody sees before it is whole. It replaces none unless the request says so.
  [[nodiscard]] ExportResult run();

 private:
  /// The exact document's bytes, and what of the bundle the corrections need.
  struct Exported {
    MSPEXMLExporter::DocumentPointer plan;
    MSPEXMLExporter::DocumentPointer tableOfContents;
    std::string bytes;
  };

  void exportBundle();
  [[nodiscard]] Exported exportInMemory();
  void describe(const conform::Copy& copy);
  void write(const conform::Copy& copy);

  ExportRequest request_;
  ExportResult result_;
};
