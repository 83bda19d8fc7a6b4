#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The command-line driver: settings, list of bundles, output paths, one export per bundle, exit status. Bundles are
/// exported strictly one after another.
class MSPDIExport {
 public:
  /// @param arguments the program's path, then either a bundle, or "--input-list" and a list file; then optionally the
  /// file to write or the folder to write into.
  explicit MSPDIExport(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

  /// Does all the work. All messages go to the log.
  /// @return the exit status: 0 when the last export that ran succeeded, otherwise 1. A failure that ends the run does
  /// not change the result of that last export.
  int run();

 private:
  struct Settings {
    bool includeInputExtension = false;  ///< "Plan.kvdx" becomes "Plan.kvdx.xml" instead of "Plan.xml"
    bool overwriteFilterTarget = false;  ///< an existing file at the output path is replaced
  };

  [[nodiscard]] static Settings readSettings();
  [[nodiscard]] std::string usage() const;
  /// The bundles to export, as they were given; sets outputArgumentIndex_.
  [[nodiscard]] std::vector<std::string> inputList();
  [[nodiscard]] static std::vector<std::string> entriesOfListFile(const std::string& listPath);
  void exportEntry(const std::string& entry);
  [[nodiscard]] std::string outputPath(const std::string& parentFolder, const std::string& baseName) const;

  std::vector<std::string> arguments_;
  Settings settings_;
  std::size_t outputArgumentIndex_ = 0;
  bool succeeded_ = false;  ///< the result of the most recent export
};
