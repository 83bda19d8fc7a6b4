#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Base/Budget.h"
#include "Platform/System/AtomicFile.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileReading.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"
#include "Platform/System/NumberedPath.h"
#include "Platform/Text/Normalization.h"
#include "Platform/Text/Texts.h"

using platform::Exception;
using platform::log;
using platform::NumberedPath;
using platform::URL;

namespace {

constexpr const char* kNoDocument = "MSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.";

void check(bool holds, const char* reason) {
  if (!holds) throw Exception("MSPEXMLException", reason);
}

std::string lowerCaseExtension(const URL& url) { return platform::lowercased(platform::pathExtension(url.path())); }

/// The name under which the file is in the bundle. Bundles come from systems on which a letter with an accent is the
/// same in either of Unicode's spellings, so that the name may be there in the other one.
std::string nameInBundle(const std::string& bundle, const std::string& fileName) {
  const auto isThere = [&bundle](const std::string& name) {
    return platform::fileExists(platform::appendPathComponent(bundle, name));
  };
  if (isThere(fileName)) return fileName;
  for (const auto& spelling : {platform::composed, platform::decomposed}) {
    if (std::string name = spelling(fileName); isThere(name)) return name;
  }
  return fileName;
}

}  // namespace

bool MSPEXMLExporter::exportKVDXBundle(const std::optional<URL>& source, const std::optional<URL>& toURL) {
  try {
    return exportBundle(source, toURL);
  } catch (const Exception& exception) {
    log("Exception: {}\n{}\n", exception.name(), exception.reason());
    return false;
  }
}

bool MSPEXMLExporter::exportBundle(const std::optional<URL>& source, const std::optional<URL>& destination) const {
  check(source.has_value(), "MSPEXMLExporter.exportKVDXBundle: Source URL not specified.");
  check(source->isFileURL(), "MSPEXMLExporter.exportKVDXBundle: Source must be a file system.");
  check(lowerCaseExtension(*source) == "kvdx",
        "MSPEXMLExporter.exportKVDXBundle: Source must be a Korvella 2 document bundle (.kvdx directory).");
  check(destination.has_value(), "MSPEXMLExporter.exportKVDXBundle: Destination URL not specified.");
  check(destination->isFileURL(), "MSPEXMLExporter.exportKVDXBundle: Destination must be a file system.");
  check(lowerCaseExtension(*destination) == "xml",
        "MSPEXMLExporter.exportKVDXBundle: Destination must be a MS Project XML document.");

  NumberedPath path(destination->path());
  while (isTaken(path)) path.goOn();
  log("MSPEXMLExporter: Exporting KV 2 document bundle to XML (MSPDI) file...");
  log("Input:  '{}'", source->path());
  log("Output: '{}'", path.get());

  const platform::Budget budget;
  // Made when there is something to write. An export that fails drops it.
  std::optional<platform::AtomicFile> file;
  const xml::Sink sink = [&](std::string_view piece) {
    if (!file) file.emplace(path.get());
    file->append(piece);
  };
  const Mapped mapped = map(readContents(source->path()), sink);
  const xml::OutputDocument* document = mapped.context->mspdiXmlDoc();
  if (document == nullptr) return false;
  document->serialize(sink);
  commit(*file, path);
  return true;
}

MSPEXMLExporter::Mapped MSPEXMLExporter::map(Contents contents, const xml::Sink& sink) const {
  auto context =
      std::make_unique<MSPEMapper>(contents.plan, contents.tableOfContents, contents.baselines, nullptr, info_);
  context->setSink(sink);
  context->map();
  return {std::move(contents), std::move(context)};
}

MSPEXMLExporter::Contents MSPEXMLExporter::readContents(const std::string& bundle) {
  Contents contents;
  Documents documents;
  contents.tableOfContents = documentNamed("__TOC.xml", bundle, documents);
  const xml::Node root = contents.tableOfContents->root();
  const xml::Node project = singleObjectForXQuery(root, "project");
  check(static_cast<bool>(project), "MSPEXMLExporter.exportKVDXBundle: No 'project' element found in source document.");
  const auto windows = objectsForXQuery(root, "window");
  check(!windows.empty(), "MSPEXMLExporter.exportKVDXBundle: No window elements found in source document.");

  // The first window is the front one of the document as it was last saved.
  const auto editing = stringValueForXQuery(windows.front(), "editing-scenario");
  const auto comparison = stringValueForXQuery(windows.front(), "comparison-scenario");
  for (const xml::Node scenario : objectsForXQuery(project, "scenario")) {
    const auto id = scenario.attributeText("id");
    const std::string fileName = scenario.attributeText("filename").value_or("");
    if (id && id == editing) {
      contents.plan = documentNamed(fileName, bundle, documents);
    } else if (id && id == comparison) {
      contents.baselines.push_back(documentNamed(fileName, bundle, documents));
    } else {
      const xml::Attribute name = scenario.attribute("name");
      log("Baseline \"{}\" will not be exported because it is not the baseline visible in the front Korvella document "
          "window.",
          name ? name.markup() : "(null)");
    }
  }
  return contents;
}

MSPEXMLExporter::DocumentPointer MSPEXMLExporter::documentNamed(const std::string& fileName, const std::string& bundle,
                                                                Documents& documents) {
  const std::string name = nameInBundle(bundle, fileName);
  if (name.starts_with('/')) return newXmlDocFromUrl(bundle, name);  // refused, whatever the file is
  DocumentPointer& document = documents[platform::resolvedPath(platform::appendPathComponent(bundle, name))];
  if (!document) document = newXmlDocFromUrl(bundle, name);
  return document;
}

MSPEXMLExporter::DocumentPointer MSPEXMLExporter::newXmlDocFromUrl(const std::string& bundle,
                                                                   const std::string& fileName) {
  const std::string path = platform::appendPathComponent(bundle, fileName);
  std::string problem;
  auto bytes = platform::readFileInside(bundle, fileName, &problem);
  if (!bytes) log("WARNING: Document '{}' could not be read: {}.", path, problem);
  check(bytes.has_value(), kNoDocument);

  const auto again = [bundle, fileName] { return platform::readFileInside(bundle, fileName).value_or(""); };
  xml::Reading reading = xml::Document::read(std::move(*bytes), again);
  if (!reading.document) log("WARNING: Document '{}' cannot be read as XML: {}.", path, reading.problem);
  check(reading.document != nullptr, kNoDocument);
  if (reading.isGuessed) {
    log("WARNING: Document '{}' is malformed or in an unusual encoding. What could be read of it is used.", path);
  }
  return std::move(reading.document);
}

bool MSPEXMLExporter::mayReplace(const NumberedPath& path) const {
  return whenTaken_ == WhenTaken::kReplace && path.isFirst();
}

bool MSPEXMLExporter::isTaken(const NumberedPath& path) const {
  return mayReplace(path) ? !platform::canBeReplaced(path.get()) : platform::isNameTaken(path.get());
}

void MSPEXMLExporter::commit(platform::AtomicFile& file, NumberedPath& path) const {
  auto outcome = mayReplace(path) ? file.commitReplacing(path.get()) : file.commit(path.get());
  while (outcome == platform::AtomicFile::Outcome::kTargetExists) {
    // Another program took the name meanwhile, or the system protects what is there.
    path.goOn();
    log("Output: '{}'", path.get());
    outcome = file.commit(path.get());
  }
  if (outcome == platform::AtomicFile::Outcome::kFailed) {
    log("ERROR: File '{}' could not be written: {}.", path.get(), file.failureReason());
  }
}
