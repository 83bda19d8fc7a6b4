#include "mspdi-export/BundleExport.h"

#include <memory>
#include <utility>

#include "Conform/Corrections.h"
#include "Conform/Failure.h"
#include "KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"
#include "Platform/System/AtomicFile.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"
#include "Platform/System/NumberedPath.h"
#include "mspdi-export/OutputPath.h"

namespace {

/// While it lives, nobody sees the exporter's log. What it warns about the bundle's documents is kept.
class QuietLog {
 public:
  explicit QuietLog(std::vector<std::string>& warnings) {
    platform::setLogSink([&warnings](std::string_view record) {
      constexpr std::string_view kMark = "WARNING: ";
      if (!record.starts_with("WARNING: Document ")) return;
      if (record.ends_with('.')) record.remove_suffix(1);
      warnings.emplace_back(record.substr(kMark.size()));
    });
  }
  ~QuietLog() { platform::setLogSink({}); }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;
};

/// The document's bytes, in one piece of the right size: a plan's may be larger than what else is in memory.
std::string bytesOf(const xml::OutputDocument& document) {
  std::size_t size = 0;
  document.serialize([&size](std::string_view piece) { size += piece.size(); });
  std::string bytes;
  bytes.reserve(size);
  document.serialize([&bytes](std::string_view piece) { bytes += piece; });
  return bytes;
}

}  // namespace

struct BundleExport::Exported {
  MSPEXMLExporter::DocumentPointer plan;
  MSPEXMLExporter::DocumentPointer tableOfContents;
  std::string bytes;
};

BundleExport::BundleExport(std::string bundle, std::string currency, bool keepDates)
    : bundle_(platform::absolutePath(std::move(bundle))),
      options_{platform::deletePathExtension(platform::lastPathComponent(bundle_)), std::move(currency), keepDates} {}

BundleExport::Result BundleExport::writeTo(const std::string& output) {
  const std::string path = outputPath(bundle_, output);
  // What the export took is given back here, before the document is taken apart.
  Exported exported = exportInMemory();
  const conform::Plan plan(*exported.plan, *exported.tableOfContents);
  conform::Copy copy(std::move(exported.bytes), &plan, options_);
  conform::correct(copy);
  const auto& said = copy.report.warnings();
  warnings_.insert(warnings_.end(), said.begin(), said.end());
  return {write(copy, path), copy.tasks.size(), copy.resources.size() - 1, copy.assignments.size(),
          std::move(warnings_)};
}

BundleExport::Exported BundleExport::exportInMemory() {
  const QuietLog quiet(warnings_);
  const MSPEXMLExporter exporter({{kInfoMSPDIProjectName, options_.baseName}});
  const MSPEXMLExporter::Mapped mapped = exporter.map(bundle_);
  const xml::OutputDocument* document = mapped.context->mspdiXmlDoc();
  if (document == nullptr) conform::fail("its front window shows no plan");
  return {mapped.contents.plan, mapped.contents.tableOfContents, bytesOf(*document)};
}

std::string BundleExport::write(const conform::Copy& copy, const std::string& path) {
  platform::NumberedPath target(path);
  while (platform::mayExist(target.get())) target.goOn();
  platform::AtomicFile file(target.get());
  copy.serialize([&file](std::string_view piece) { file.append(piece); });
  platform::AtomicFile::Outcome outcome = file.commit(target.get());
  while (outcome == platform::AtomicFile::Outcome::kTargetExists) {
    // Another program took the name meanwhile.
    target.goOn();
    outcome = file.commit(target.get());
  }
  if (outcome == platform::AtomicFile::Outcome::kFailed) {
    conform::fail("cannot write " + target.get() + ": " + file.failureReason());
  }
  return target.get();
}
