#pragma once

#include <string>
#include <vector>

#include "BundleExport/BundleExport.h"
#include "Platform/System/Process.h"
#include "mspdi-export/Bundles.h"
#include "mspdi-export/ExportArguments.h"
#include "mspdi-export/ProgressBar.h"
#include "mspdi-export/Summary.h"

/// The command mspdi-export: reads the command line, exports each bundle, and prints the results. Several bundles are
/// exported one after the other, each in its own process, since numbering and time zone belong to the process.
class ExportCommand {
 public:
  ExportCommand(int argc, const char* const* argv) : argc_(argc), argv_(argv) {}

  /// @return the exit status: 0 when every file was written (or could be, with --check), 1 when one was not, 2 for a
  /// wrong use.
  int run();

 private:
  /// Exports the bundle in this process and prints the result.
  /// @param folder the bundle itself, or an empty folder to unpack it into.
  /// @return the result for the table of all bundles.
  [[nodiscard]] platform::ChildResult exportAndTell(const Bundle& bundle, const std::string& folder,
                                                    bool showsProgress) const;
  /// The same in a child process. This process removes the folder into which a packed bundle is unpacked, however the
  /// child ends.
  /// @param bar cleared before anything is printed.
  /// @param showsProgress whether the child shows a bar of its own.
  [[nodiscard]] platform::ChildResult exportByChild(const Bundle& bundle, ProgressBar& bar, bool showsProgress) const;
  /// @param folder the bundle itself, or the folder to which it was unpacked.
  [[nodiscard]] ExportResult exportFolder(const Bundle& bundle, const std::string& folder, bool showsProgress) const;
  /// Writes the page of the written file if one was asked for. When that fails, the bundle counts as failed.
  /// @return the page's path; empty when there is none.
  [[nodiscard]] std::string writePage(ExportResult& result) const;
  /// Prints that there is nothing to export, or that a process ended without printing a result.
  void tellFailure(const std::string& bundle, const std::string& reason) const;
  /// Prints that something below a folder looks like a bundle and is none.
  void tellPassedOver(const NoBundle& passed) const;
  /// @return false when it should go to standard output and could not be written there.
  [[nodiscard]] bool tell(const Bundle& bundle, const ExportResult& result, const OutputFiles& files,
                          double seconds) const;
  /// @return how many bundles failed.
  [[nodiscard]] std::size_t exportAll(const std::vector<Bundle>& bundles) const;

  int argc_;
  const char* const* argv_;
  ExportArguments arguments_;
};
