#include "BundleExport/BundleExport.h"

#include <new>
#include <utility>

#include "BundleExport/OutputPath.h"
#include "BundleExport/ZoneChoice.h"
#include "Conform/Copy.h"
#include "Conform/Corrections.h"
#include "Conform/Doubts.h"
#include "Conform/Failure.h"
#include "KVMSPCommon/MSPCDateComponents.h"
#include "KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/Log.h"
#include "Platform/System/NewFile.h"

namespace {

/// While this object lives, the exporter's log goes to the request's sink, and its warnings about the bundle's
/// documents are collected.
class LogHook {
 public:
  LogHook(const std::function<void(std::string_view)>& log, std::vector<std::string>& warnings) {
    constexpr std::string_view kMark = "WARNING: ";
    const auto take = [&log, &warnings, kMark](std::string_view record) {
      if (log) log(record);
      if (!record.starts_with("WARNING: Document ")) return;
      if (record.ends_with('.')) record.remove_suffix(1);
      warnings.emplace_back(record.substr(kMark.size()));
    };
    platform::setLogSink(take, log ? "" : kMark);
  }
  ~LogHook() { platform::setLogSink({}); }
  LogHook(const LogHook&) = delete;
  LogHook& operator=(const LogHook&) = delete;
};

/// Leaves out the name of the operation that raised it. For a date followed by something other than a time, the
/// exporter raises an empty message.
std::string reasonOf(const platform::Exception& exception) {
  std::string reason =
      exception.reason().empty() ? "a date is followed by something else than a time" : exception.reason();
  if (reason.starts_with("MSPEXMLExporter.")) reason.erase(0, reason.find(": ") + 2);
  if (reason.ends_with('.')) reason.pop_back();
  return reason;
}

/// The document's bytes, in one piece of the right size. They count in the budget: the tree to be corrected takes
/// several times as much memory. Without this, a few bytes of a plan could make it take 11 GB.
std::string bytesOf(const xml::OutputDocument& document) {
  std::size_t size = 0;
  document.serialize([&size](std::string_view piece) { size += piece.size(); });
  platform::Budget::spend(size);
  std::string bytes;
  bytes.reserve(size);
  document.serialize([&bytes](std::string_view piece) { bytes += piece; });
  return bytes;
}

[[noreturn]] void failToWrite(const std::string& path, const std::string& reason) {
  conform::fail("the file '" + path + "' could not be written: " + reason);
}

/// The export of one bundle.
class BundleExport {
 public:
  BundleExport(const ExportRequest& request, ExportResult& result) : request_(request), result_(result) {}

  void run();

 private:
  /// The exact document's bytes, and the parts of the bundle that the corrections need.
  struct Exported {
    MSPEXMLExporter::DocumentPointer plan;
    MSPEXMLExporter::DocumentPointer tableOfContents;
    conform::Baselines baselines;
    std::string bytes;
  };

  [[nodiscard]] Exported exportInMemory();
  void describe(const conform::Copy& copy);
  void write(const conform::Copy& copy);
  void checkOutput() const;

  const ExportRequest& request_;
  ExportResult& result_;
};

void BundleExport::run() {
  result_.path = outputPath(request_.bundle, request_.defaultFolder, request_.baseName, request_.output);
  // The memory of the export is freed before the document is parsed.
  Exported exported = exportInMemory();
  const conform::Plan plan(*exported.plan, *exported.tableOfContents);
  conform::Copy copy(std::move(exported.bytes), &plan, {request_.baseName, request_.currency, request_.keepDates});
  conform::warnOfDoubts(plan, exported.baselines, copy.report);
  exported.baselines.clear();
  conform::correct(copy);
  describe(copy);
  if (request_.strict && !result_.warnings.empty()) conform::fail("there are warnings, so nothing is written");
  if (request_.check) {
    checkOutput();
  } else {
    write(copy);
  }
  result_.status = request_.check ? ExportResult::Status::kChecked : ExportResult::Status::kWritten;
}

BundleExport::Exported BundleExport::exportInMemory() {
  const LogHook hook(request_.log, result_.warnings);
  const platform::Budget budget;
  MSPCDateComponents::takeOffsetsAsMeant();
  MSPEXMLExporter::Contents contents = MSPEXMLExporter::readContents(request_.bundle);
  if (contents.plan) {
    const ZoneChoice zone = chooseZone(contents.plan->root(), request_.zone);
    result_.zone = zone.name;
    result_.zoneSentence = zone.sentence;
    if (!zone.warning.empty()) result_.warnings.push_back(zone.warning);
  }
  result_.baselines = contents.baselines.size();
  const MSPEXMLExporter exporter({{kInfoMSPDIProjectName, request_.baseName}});
  // Write nothing before the whole size is known: a text that grows takes twice its size.
  const xml::Sink none;
  const MSPEXMLExporter::Mapped mapped = exporter.map(std::move(contents), none);
  const xml::OutputDocument* document = mapped.context->mspdiXmlDoc();
  if (document == nullptr) conform::fail("its front window shows no plan");
  return {mapped.contents.plan, mapped.contents.tableOfContents, mapped.contents.baselines, bytesOf(*document)};
}

void BundleExport::describe(const conform::Copy& copy) {
  const auto& said = copy.report.warnings();
  result_.warnings.insert(result_.warnings.end(), said.begin(), said.end());
  result_.corrections = copy.report.counts();
  result_.tasks = copy.tasks.size();
  result_.links = copy.links.size();
  result_.resources = copy.resources.size() - 1;
  result_.assignments = copy.assignments.size();
  result_.calendars = copy.calendars.size();
}

void BundleExport::write(const conform::Copy& copy) {
  const platform::NewFile written = platform::writeNewFile(
      result_.path, request_.overwrite,
      [&copy](platform::AtomicFile& file) { copy.serialize([&file](std::string_view piece) { file.append(piece); }); });
  result_.path = written.path;
  if (!written.failure.empty()) failToWrite(written.path, written.failure);
}

void BundleExport::checkOutput() const {
  if (const std::string problem = platform::problemOfNewFile(result_.path, request_.overwrite); !problem.empty()) {
    failToWrite(result_.path, problem);
  }
}

}  // namespace

ExportResult exportBundle(const ExportRequest& request) {
  ExportResult result;
  try {
    BundleExport(request, result).run();
  } catch (const platform::Exception& exception) {
    result.reason = reasonOf(exception);
  } catch (const std::bad_alloc&) {
    result.reason = "there is not enough memory for this plan";
  }
  return result;
}
