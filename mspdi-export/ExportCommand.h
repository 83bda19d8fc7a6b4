#pragma once

#include <string>
#include <vector>

#include "BundleExport/BundleExport.h"
#include "Platform/System/Process.h"
#include "mspdi-export/Bundles.h"
#include "mspdi-export/ExportArguments.h"
#include "mspdi-export/ProgressBar.h"

/// The command mspdi-export: reads the command line, exports each bundle, and says what became of it. Several bundles
/// are exported one after the other, each in a process of its own, since numbers and time zone belong to the process.
class ExportCommand {
 public:
  ExportCommand(int argc, const char* const* argv) : argc_(argc), argv_(argv) {}

  /// @return the exit status: 0 when every file was written (or could be, with --check), 1 when one was not, 2 for a
  /// wrong use.
  int run();

 private:
  /// Exports the bundle in this process and says what became of it.
  /// @param folder the bundle itself, or an empty folder to unpack it into.
  /// @return the line of a table.
  [[nodiscard]] platform::ChildResult exportAndTell(const Bundle& bundle, const std::string& folder,
                                                    bool showsProgress) const;
  /// The same by a child. The folder that a packed bundle is unpacked into is removed whatever ends the child.
  /// @param bar taken off the screen before something is said. @param showsProgress whether the child shows its own.
  [[nodiscard]] platform::ChildResult exportByChild(const Bundle& bundle, ProgressBar& bar, bool showsProgress) const;
  /// @param folder the bundle itself, or what it was unpacked to.
  [[nodiscard]] ExportResult exportFolder(const Bundle& bundle, const std::string& folder, bool showsProgress) const;
  /// Writes the page of the file that was written, when one is wanted; the bundle counts as failed when that fails.
  /// @return the page's path; empty when there is none.
  [[nodiscard]] std::string writePage(ExportResult& result) const;
  /// Says that there is nothing to export, or that a process ended before it could say so.
  void tellFailure(const std::string& bundle, const std::string& reason) const;
  /// @return whether standard output took it, if that is where it went.
  [[nodiscard]] bool tell(const Bundle& bundle, const ExportResult& result, const std::string& page,
                          double seconds) const;
  /// @return how many bundles failed.
  [[nodiscard]] std::size_t exportAll(const std::vector<Bundle>& bundles) const;

  int argc_;
  const char* const* argv_;
  ExportArguments arguments_;
};
