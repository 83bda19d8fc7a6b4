#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEBaseline.h"
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

/// The name that the file really has in the bundle. Bundles come from systems that treat both Unicode spellings of an
/// accented letter as the same, so the file may have the other spelling.
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

/// Reads the documents of a bundle, each only once: a table of contents may name a large one a thousand times.
class BundleReader {
 public:
  explicit BundleReader(const std::string& bundle) : bundle_(bundle) {}

  /// Reads a document of the bundle, repaired when it is malformed. Logs a warning with the file's name when something
  /// was guessed or repaired, and the reason when it cannot be read at all.
  /// @throws platform::Exception when it cannot be read at all.
  MSPEXMLExporter::DocumentPointer documentNamed(const std::string& fileName) {
    return told(placeOf(fileName)).content;
  }

  /// Reads the compared scenarios and keeps only excerpts, so that they are not in memory together with the plan. Logs
  /// nothing yet, since the log follows the order of the table of contents. A file that is also the plan stays whole.
  void readCompared(const std::set<std::string>& compared, const std::string& plan) {
    planKey_ = placeOf(plan).key;
    for (const std::string& fileName : compared) {
      const Place& place = placeOf(fileName);
      if (isNeeded(place)) continue;
      ReadDocument& document = read(place);
      if (document.content) document.content = MSPEBaseline::excerpt(std::move(document.content));
    }
  }

  /// Reads a document that is not exported, and logs what documentNamed() would. Keeps it only if it is also needed
  /// otherwise, since all of them together could take gigabytes.
  void checkNamed(const std::string& fileName) {
    const Place& place = placeOf(fileName);
    const bool isKept = isNeeded(place);
    ReadDocument& document = told(place);
    if (!isKept) document.content.reset();
  }

 private:
  struct ReadDocument {
    MSPEXMLExporter::DocumentPointer content;  ///< null when it cannot be read at all, or was only checked
    std::vector<std::string> warnings;         ///< not logged yet
    bool isReadable = false;
  };

  struct Place {
    std::string name;  ///< in the bundle
    std::string key;   ///< identifies the document
  };

  /// Determined once for each file name, since the file may be replaced meanwhile. There may not be many names: links
  /// in the bundle can make the system take milliseconds for each.
  const Place& placeOf(const std::string& fileName) {
    const auto [position, isNew] = places_.try_emplace(fileName);
    if (!isNew) return position->second;
    constexpr std::size_t kMaximumNames = 200;
    platform::require(places_.size() <= 1 + kMaximumNames,  // one is that of the table of contents
                      "The table of contents has too many files of the edited scenario and of compared ones. At most "
                      "{} can be read.",
                      kMaximumNames);
    const std::string name = nameInBundle(bundle_, fileName);
    // Reading an absolute name is refused, so the file is not looked for.
    position->second = {
        name, name.starts_with('/') ? name : platform::identityOf(platform::appendPathComponent(bundle_, name))};
    return position->second;
  }

  [[nodiscard]] bool isNeeded(const Place& place) const {
    return place.key == planKey_ || documents_.contains(place.key);
  }

  ReadDocument& told(const Place& place) {
    ReadDocument& document = read(place);
    for (const std::string& warning : document.warnings) log("WARNING: {}", warning);
    document.warnings.clear();
    check(document.isReadable, kNoDocument);
    return document;
  }

  ReadDocument& read(const Place& place) {
    const auto [position, isNew] = documents_.try_emplace(place.key);
    if (isNew) position->second = newXmlDocFromUrl(place.name);
    return position->second;
  }

  [[nodiscard]] ReadDocument newXmlDocFromUrl(const std::string& name) const {
    const std::string path = platform::appendPathComponent(bundle_, name);
    std::string problem;
    platform::ReadAgain readAgain;
    auto bytes = platform::readFileInside(bundle_, name, &problem, &readAgain);
    if (!bytes) return {nullptr, {fmt::format("Document '{}' could not be read: {}.", path, problem)}};

    const auto again = [readAgain, path] {
      auto same = readAgain();
      platform::require(same.has_value(), "Document '{}' was changed while it was exported.", path);
      return std::move(*same);
    };
    xml::Reading reading = xml::Document::read(std::move(*bytes), again);
    if (!reading.document)
      return {nullptr, {fmt::format("Document '{}' cannot be read as XML: {}.", path, reading.problem)}};
    ReadDocument document = {std::move(reading.document), {}, true};
    if (reading.isGuessed) {
      document.warnings = {
          fmt::format("Document '{}' is malformed or in an unusual encoding. What could be read of it is used.", path)};
    }
    return document;
  }

  std::string bundle_;
  std::string planKey_;
  std::map<std::string, Place> places_;            ///< by the names in the table of contents
  std::map<std::string, ReadDocument> documents_;  ///< by their keys
};

/// A scenario that the table of contents names.
struct Listed {
  enum class Use { kPlan, kBaseline, kNone };
  Use use = Use::kNone;
  std::string fileName;
  xml::Node scenario;
};

std::vector<Listed> listedScenarios(xml::Node project, xml::Node frontWindow) {
  const auto editing = stringValueForXQuery(frontWindow, "editing-scenario");
  const auto comparison = stringValueForXQuery(frontWindow, "comparison-scenario");
  std::vector<Listed> list;
  for (const xml::Node scenario : objectsForXQuery(project, "scenario")) {
    const auto id = scenario.attributeText("id");
    const Listed::Use use = !id                ? Listed::Use::kNone
                            : id == editing    ? Listed::Use::kPlan
                            : id == comparison ? Listed::Use::kBaseline
                                               : Listed::Use::kNone;
    list.push_back({use, scenario.attributeText("filename").value_or(""), scenario});
  }
  return list;
}

bool isPlan(const Listed& listed) { return listed.use == Listed::Use::kPlan; }

bool isBaseline(const Listed& listed) { return listed.use == Listed::Use::kBaseline; }

/// The files of the compared scenarios, each once.
std::set<std::string> filesOfBaselines(const std::vector<Listed>& list) {
  std::set<std::string> files;
  for (const Listed& listed : list) {
    if (isBaseline(listed)) files.insert(listed.fileName);
  }
  return files;
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
  // Created when there is something to write; dropped when the export fails.
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
  if (sink) context->setSink(sink);
  context->map();
  return {std::move(contents), std::move(context)};
}

MSPEXMLExporter::Contents MSPEXMLExporter::readContents(const std::string& bundle) {
  Contents contents;
  BundleReader reader(bundle);
  contents.tableOfContents = reader.documentNamed("__TOC.xml");
  const xml::Node root = contents.tableOfContents->root();
  const xml::Node project = singleObjectForXQuery(root, "project");
  check(static_cast<bool>(project), "MSPEXMLExporter.exportKVDXBundle: No 'project' element found in source document.");
  const auto windows = objectsForXQuery(root, "window");
  check(!windows.empty(), "MSPEXMLExporter.exportKVDXBundle: No window elements found in source document.");

  // The first window was the front one when the document was last saved.
  const std::vector<Listed> list = listedScenarios(project, windows.front());
  MSPEMapper::requireFewBaselines(static_cast<std::size_t>(std::count_if(list.begin(), list.end(), isBaseline)));
  // If several have the id of the edited scenario, the last one is exported.
  const auto plan = std::find_if(list.rbegin(), list.rend(), isPlan);
  reader.readCompared(filesOfBaselines(list), plan == list.rend() ? "" : plan->fileName);
  for (const Listed& listed : list) {
    if (isPlan(listed) && &listed == &*plan) {
      contents.plan = reader.documentNamed(listed.fileName);
    } else if (isPlan(listed)) {
      reader.checkNamed(listed.fileName);
    } else if (isBaseline(listed)) {
      contents.baselines.push_back(reader.documentNamed(listed.fileName));
    } else {
      const xml::Attribute name = listed.scenario.attribute("name");
      log("Baseline \"{}\" will not be exported because it is not the baseline visible in the front Korvella document "
          "window.",
          name ? name.markup() : "(null)");
    }
  }
  return contents;
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
