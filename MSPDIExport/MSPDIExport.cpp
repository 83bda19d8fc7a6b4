#include "MSPDIExport/MSPDIExport.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEExporterInfo.h"
#include "KVMSPCommon/MSPExportMapper/MSPEXMLExporter.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileReading.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/Log.h"
#include "Platform/System/UserDefaults.h"
#include "Platform/Text/Texts.h"

using platform::Exception;
using platform::log;
using platform::URL;

namespace {

constexpr std::string_view kInputListOption = "--input-list";
constexpr std::string_view kCommentMark = "::";
constexpr std::string_view kBundleExtension = "kvdx";
constexpr std::string_view kOutputExtension = "xml";

[[noreturn]] void commandLineError(std::string reason) {
  throw Exception("CommandLineArgumentException", std::move(reason));
}

[[noreturn]] void fileError(std::string reason) { throw Exception("FileNotFoundException", std::move(reason)); }

/// False for blank lines and comments of a list file.
bool namesBundle(const std::string& entry) { return !entry.empty() && !entry.starts_with(kCommentMark); }

bool hasBundleExtension(const std::string& path) {
  return platform::lowercased(platform::pathExtension(path)) == kBundleExtension;
}

/// Whether a folder is a bundle or inside one.
/// @param folder its absolute path.
bool isInsideAnyBundle(std::string folder) {
  while (!folder.empty() && folder != "/" && !hasBundleExtension(folder)) {
    folder = platform::deleteLastPathComponent(folder);
  }
  return hasBundleExtension(folder);
}

/// Refuses an output inside a bundle: it could replace a source file, and a failed export would delete it.
void checkOutputIsOutsideBundles(const std::string& output, const std::string& bundle) {
  const std::string folder = platform::absolutePath(platform::deleteLastPathComponent(output));
  const std::string real = platform::resolvedPath(folder);
  const std::string source = platform::resolvedPath(platform::absolutePath(bundle));
  if (isInsideAnyBundle(folder) || isInsideAnyBundle(real) || (real + "/").starts_with(source + "/")) {
    commandLineError(fmt::format("Output is inside a document bundle: {}.", output));
  }
}

}  // namespace

int MSPDIExport::run() {
  if (!arguments_.empty()) platform::setLogProgramName(platform::lastPathComponent(arguments_[0]));
  log("MSPDIExporter Runner");
  settings_ = readSettings();
  try {
    for (const std::string& entry : inputList()) {
      if (namesBundle(entry)) exportEntry(entry);
    }
  } catch (const Exception& exception) {
    log("Exception: {}\n{}", exception.name(), exception.reason());
  }
  return succeeded_ ? 0 : 1;
}

MSPDIExport::Settings MSPDIExport::readSettings() {
  const auto domain = platform::UserDefaults::persistentDomain(kMSPExportMSPDIFilter);
  const auto isSet = [&domain](const char* key) {
    const auto value = domain.find(key);
    return value != domain.end() && boolFromString(value->second);
  };
  return {isSet("IncludeInputExtension"), isSet("OverwriteFilterTarget")};
}

std::string MSPDIExport::usage() const {
  const std::string program = arguments_.empty() ? "" : platform::lastPathComponent(arguments_[0]);
  return fmt::format(
      "Usage:\n  {0} <input_KVDX_bundle_path> [<output_path>]\n  {0} --input-list <input_list_path>  [<output_path>]\n"
      "<output_path> is either an exported XML file, or a directory to write XML file to.",
      program);
}

std::vector<std::string> MSPDIExport::inputList() {
  if (arguments_.size() < 2) commandLineError("Too few arguments. Need at least input bundle.\n" + usage());
  std::vector<std::string> entries;
  if (arguments_[1] != kInputListOption) {
    log("### Export single file: \"{}\"", arguments_[1]);
    entries.push_back(arguments_[1]);
    outputArgumentIndex_ = 2;
  } else {
    log("### Export files from the list:");
    if (arguments_.size() < 3) commandLineError("No input list found in command line.");
    entries = entriesOfListFile(platform::standardizePath(arguments_[2]));
    for (const std::string& entry : entries) {
      if (namesBundle(entry)) log("    \"{}\"", entry);
    }
    outputArgumentIndex_ = 3;
  }
  platform::require(!entries.empty(), "Failed to build input files list.");
  return entries;
}

std::vector<std::string> MSPDIExport::entriesOfListFile(const std::string& listPath) {
  if (!platform::fileExists(listPath) || platform::isDirectory(listPath)) {
    fileError("Input list not found or it is a directory: " + listPath);
  }
  // The list may be a pipe of unknown size or a device that never ends. A line takes up to 80 times its bytes in
  // memory.
  constexpr std::uint64_t kLargestList = std::uint64_t{16} << 20;
  const auto text = platform::readStream(listPath, kLargestList);
  // No path has a NUL: the system would take what is in front of it for the path, and perhaps delete that.
  const bool isText = text && platform::isUTF8(*text) && text->find('\0') == std::string::npos;
  if (!isText) fileError("Input list file could not be read or empty: " + listPath);
  std::vector<std::string> entries;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  std::string_view lines(*text);
  if (lines.starts_with(kByteOrderMark)) lines.remove_prefix(kByteOrderMark.size());
  for (const std::string_view line : platform::splitAtNewlines(lines)) entries.emplace_back(line);
  if (entries.empty()) fileError("Input list could not be built or empty: " + listPath);
  return entries;
}

void MSPDIExport::exportEntry(const std::string& entry) {
  if (!hasBundleExtension(entry)) {
    commandLineError(fmt::format("Input file is not a valid KVDX doc folder: '{}'", entry));
  }
  const std::string bundlePath = platform::standardizePath(entry);
  if (!platform::fileExists(bundlePath)) fileError("Input file not found: " + bundlePath);
  if (!platform::isDirectory(bundlePath)) fileError("Input file is not a bundle (folder): " + bundlePath);
  const std::string baseName = platform::deletePathExtension(platform::lastPathComponent(bundlePath));
  const URL input = URL::fileURLWithPath(bundlePath, true);
  log("### Export from URL: '{}'", input.absoluteString());

  const std::string output = outputPath(platform::deleteLastPathComponent(bundlePath), baseName);
  checkOutputIsOutsideBundles(output, bundlePath);
  const URL outputURL = URL::fileURLWithPath(output, false);
  log("### Write to URL: '{}'", outputURL.absoluteString());

  using WhenTaken = MSPEXMLExporter::WhenTaken;
  MSPEXMLExporter exporter({{kInfoMSPDIProjectName, baseName}},
                           settings_.overwriteFilterTarget ? WhenTaken::kReplace : WhenTaken::kNumber);
  succeeded_ = exporter.exportKVDXBundle(input, outputURL);
  log("### Exporter {}.", succeeded_ ? "SUCCEEDED" : "FAILED");
  if (!succeeded_) platform::deleteItem(outputURL.path());
}

std::string MSPDIExport::outputPath(const std::string& parentFolder, const std::string& baseName) const {
  std::string fileName = baseName;
  if (settings_.includeInputExtension) fileName.append(".").append(kBundleExtension);
  fileName.append(".").append(kOutputExtension);
  if (arguments_.size() <= outputArgumentIndex_) return platform::appendPathComponent(parentFolder, fileName);

  std::string path = platform::standardizePath(arguments_[outputArgumentIndex_]);
  if (platform::isDirectory(path)) return platform::appendPathComponent(path, fileName);
  if (platform::pathExtension(path) != kOutputExtension) {
    commandLineError(fmt::format("Output file extension is not 'xml': {}.", path));
  }
  return path;
}
