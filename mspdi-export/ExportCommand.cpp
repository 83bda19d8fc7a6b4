#include "mspdi-export/ExportCommand.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <set>

#include "Page/PageFile.h"
#include "Platform/System/Console.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/ZipArchive.h"
#include "mspdi-export/ProgressBar.h"
#include "mspdi-export/Remedies.h"

namespace {

template <typename... Args>
void say(fmt::format_string<Args...> format, Args&&... args) {
  platform::say("mspdi-export", fmt::format(format, std::forward<Args>(args)...));
}

/// Follows the progress of an export by the exporter's log, which first has the number of tasks and then a record for
/// each.
class LogProgress {
 public:
  LogProgress(ProgressBar& bar, std::string label) : bar_(bar), label_(std::move(label)) {}

  void take(std::string_view record) {
    constexpr std::string_view kAll = "Mapping ";
    if (record.starts_with("  Mapping Task ")) {
      bar_.update(++done_, total_, label_);
    } else if (record.starts_with(kAll) && record.ends_with(" Tasks ...")) {
      for (const char c : record.substr(kAll.size(), record.find(' ', kAll.size()) - kAll.size())) {
        total_ = total_ * 10 + static_cast<std::size_t>(c - '0');
      }
    }
  }

 private:
  ProgressBar& bar_;
  std::string label_;
  std::size_t done_ = 0;
  std::size_t total_ = 0;
};

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// The reason when a process ended without giving one.
constexpr const char* kKilled = "its process could not be started, or ended unexpectedly";

std::string sentenceOf(const platform::ChildResult& result) {
  return result.said.empty() ? fmt::format("failed: {}", kKilled) : result.said;
}

/// Prints one line for each bundle, with names and results in columns.
void tellTable(const std::vector<Bundle>& bundles, const std::vector<platform::ChildResult>& results) {
  std::size_t width = 0;
  for (const Bundle& bundle : bundles) width = std::max(width, bundle.path.size());
  for (std::size_t i = 0; i < bundles.size(); ++i) {
    say("{:<{}}  {}", bundles[i].path, width, sentenceOf(results[i]));
  }
}

/// @return whether the object could be written to standard output.
bool tellProgram(const std::string& bundle, const std::string& object) {
  const bool isTold = platform::writeToStandardOutput(object + "\n");
  if (!isTold) say("{}: standard output could not be written.", bundle);
  return isTold;
}

/// The object for a path that leads to no export.
std::string objectWithReason(const std::string& path, std::string_view status, const std::string& reason) {
  ExportResult result;
  result.reason = reason;
  return jsonOf(path, status, result, {}, 0.0);
}

/// The path for the bundle's file, before any numbering.
std::string targetOf(const Bundle& bundle, const std::string& output) {
  const std::string folder =
      output.empty() ? platform::deleteLastPathComponent(platform::absolutePath(bundle.path)) : output;
  return platform::appendPathComponent(platform::resolvedPath(folder), baseNameOf(bundle) + ".xml");
}

/// A file to which two bundles would be written; none when each has its own.
std::optional<std::string> sharedTarget(const std::vector<Bundle>& bundles, const std::string& output) {
  std::set<std::string> targets;
  for (const Bundle& bundle : bundles) {
    const auto [target, isNew] = targets.insert(targetOf(bundle, output));
    if (!isNew) return *target;
  }
  return std::nullopt;
}

}  // namespace

int ExportCommand::run() {
  const auto read = readExportArguments(argc_, argv_);
  if (const int* status = std::get_if<int>(&read)) return *status;
  arguments_ = std::get<ExportArguments>(read);
  const FoundBundles found = findBundles(arguments_.bundles);
  for (const NoBundle& problem : found.problems) tellFailure(problem.path, problem.reason);
  for (const NoBundle& passed : found.passedOver) tellPassedOver(passed);
  if (found.bundles.size() > 1 && !arguments_.output.empty() && !platform::isDirectory(arguments_.output)) {
    say("with several bundles, -o names an existing folder: '{}' is none", arguments_.output);
    return kWrongUse;
  }
  const auto shared = sharedTarget(found.bundles, arguments_.output);
  if (shared && arguments_.overwrite) {
    say("with --overwrite, two bundles would be written to '{}'", *shared);
    return kWrongUse;
  }
  std::size_t failed = found.problems.size();
  if (found.bundles.size() == 1) {
    const Bundle& bundle = found.bundles[0];
    ProgressBar none(false);
    const auto result = bundle.isPacked ? exportByChild(bundle, none, true) : exportAndTell(bundle, bundle.path, true);
    if (result.said.empty()) {
      tellFailure(bundle.path, arguments_.json ? kKilled : fmt::format("{}: {}.", bundle.path, kKilled));
    }
    failed += result.status == 0 ? 0 : 1;
  } else {
    failed += exportAll(found.bundles);
  }
  return failed == 0 ? 0 : 1;
}

std::size_t ExportCommand::exportAll(const std::vector<Bundle>& bundles) const {
  ProgressBar bar(!arguments_.quiet && !arguments_.json);
  std::vector<platform::ChildResult> results;
  for (const Bundle& bundle : bundles) {
    bar.update(results.size(), bundles.size(), bundle.path, true);
    results.push_back(exportByChild(bundle, bar, false));
  }
  bar.clear();
  for (std::size_t i = 0; i < bundles.size(); ++i) {
    if (!results[i].said.empty()) continue;
    if (arguments_.json) tellFailure(bundles[i].path, kKilled);
    if (arguments_.quiet && !arguments_.json) say("{}: {}.", bundles[i].path, kKilled);
  }
  const auto failed = static_cast<std::size_t>(
      std::count_if(results.begin(), results.end(), [](const auto& result) { return result.status != 0; }));
  if (!arguments_.quiet && !arguments_.json && !bundles.empty()) {
    tellTable(bundles, results);
    say("{} of {} bundles exported", bundles.size() - failed, bundles.size());
  }
  return failed;
}

platform::ChildResult ExportCommand::exportAndTell(const Bundle& bundle, const std::string& folder,
                                                   bool showsProgress) const {
  const auto start = std::chrono::steady_clock::now();
  std::optional<UnpackedBundle> unpacked;
  if (bundle.isPacked) unpacked.emplace(bundle, folder);
  ExportResult result;
  if (unpacked && unpacked->problem()) {
    result.reason = "the archive could not be unpacked: " + *unpacked->problem();
  } else {
    result = exportFolder(bundle, unpacked ? unpacked->path() : folder, showsProgress);
  }
  const bool isFailed = result.status == ExportResult::Status::kFailed;
  if (isFailed && unpacked && unpacked->guessesNames())
    result.warnings.push_back("names in the archive are not in UTF-8, and were read in code page 437");
  OutputFiles files;
  if (result.status != ExportResult::Status::kFailed) files.output = result.path;
  files.page = writePage(result);
  const bool isTold = tell(bundle, result, files, secondsSince(start));
  if (result.status == ExportResult::Status::kFailed) return {1, "failed: " + result.reason};
  return {isTold ? 0 : 1, fmt::format("{}, {} warnings", result.path, result.warnings.size())};
}

platform::ChildResult ExportCommand::exportByChild(const Bundle& bundle, ProgressBar& bar, bool showsProgress) const {
  const auto exportIn = [&](const std::string& folder) {
    return platform::runInChild([&] {
      bar.clear();
      return exportAndTell(bundle, folder, showsProgress);
    });
  };
  if (!bundle.isPacked) return exportIn(bundle.path);
  const platform::DeferredEnd end;  // destroyed after the folder is removed
  const platform::TemporaryFolder folder;
  return exportIn(folder.path());
}

std::string ExportCommand::writePage(ExportResult& result) const {
  if (!arguments_.page || result.status != ExportResult::Status::kWritten) return "";
  try {
    return page::writePageOf(result.path, page::pagePathOf(result.path), arguments_.overwrite);
  } catch (const platform::Exception& exception) {
    result.status = ExportResult::Status::kFailed;
    result.reason = fmt::format("'{}' is written, but not its page: {}", result.path, exception.reason());
    return "";
  }
}

ExportResult ExportCommand::exportFolder(const Bundle& bundle, const std::string& folder, bool showsProgress) const {
  ProgressBar bar(showsProgress && !arguments_.quiet && !arguments_.verbose && !arguments_.json);
  LogProgress progress(bar, platform::lastPathComponent(bundle.path));
  ExportRequest request;
  request.bundle = platform::absolutePath(folder);
  request.baseName = baseNameOf(bundle);
  request.defaultFolder = platform::deleteLastPathComponent(platform::absolutePath(bundle.path));
  request.output = arguments_.output;
  request.zone = arguments_.zone;
  request.currency = arguments_.currency;
  request.overwrite = arguments_.overwrite;
  request.keepDates = arguments_.keepDates;
  request.check = arguments_.check;
  request.strict = arguments_.strict;
  if (bar.isShown() || arguments_.verbose) {
    request.log = [&](std::string_view record) {
      progress.take(record);
      if (arguments_.verbose) say("{}", record);
    };
  }
  return exportBundle(request);
}

void ExportCommand::tellFailure(const std::string& bundle, const std::string& reason) const {
  if (!arguments_.json) {
    say("{}", reason);
    return;
  }
  static_cast<void>(tellProgram(bundle, objectWithReason(bundle, nameOf(ExportResult::Status::kFailed), reason)));
}

void ExportCommand::tellPassedOver(const NoBundle& passed) const {
  if (arguments_.json) {
    static_cast<void>(tellProgram(passed.path, objectWithReason(passed.path, "skipped", passed.reason)));
  } else if (!arguments_.quiet) {
    say("{}", passed.reason);
  }
}

bool ExportCommand::tell(const Bundle& bundle, const ExportResult& result, const OutputFiles& files,
                         double seconds) const {
  const bool isFailed = result.status == ExportResult::Status::kFailed;
  if (arguments_.json)
    return tellProgram(bundle.path, jsonOf(bundle.path, nameOf(result.status), result, files, seconds));
  if (arguments_.verbose) {
    for (const auto& [what, number] : result.corrections) say("corrected: {}: {}", what, number);
  }
  if (!arguments_.quiet) {
    for (const std::string& warning : result.warnings) say("warning: {}", warning);
    if (!result.zoneSentence.empty()) say("{}", result.zoneSentence);
  }
  if (isFailed) {
    say("{}: {}.", bundle.path, result.reason);
    say("{}", remedyFor(result.reason));
  } else if (!arguments_.quiet) {
    say("{}", summaryOf(result, seconds));
    if (!files.page.empty()) say("{} shows the plan", platform::lastPathComponent(files.page));
  }
  return true;
}
