#pragma once

#include <string>
#include <variant>
#include <vector>

/// The options and arguments of the command line.
struct ExportArguments {
  std::vector<std::string> bundles;  ///< bundles, packed bundles, folders with bundles below
  std::string output;                ///< a file or an existing folder; empty for beside the bundle
  std::string zone;                  ///< as in TZ; "machine" for this machine's; empty for the plan's own
  std::string currency;              ///< ISO 4217 code in capitals; empty when not given
  bool overwrite = false;            ///< replace the file that has the output's name
  bool keepDates = false;            ///< schedule every task by hand
  bool page = false;                 ///< write a page that shows the file as well
  bool check = false;                ///< do everything except writing
  bool strict = false;               ///< warnings count as failures
  bool quiet = false;                ///< only errors
  bool verbose = false;              ///< the exporter's log as well
  bool json = false;                 ///< one JSON object a bundle on standard output
};

/// The exit status for a wrong command line.
inline constexpr int kWrongUse = 2;

/// Reads the command line. Prints help, the version or what is wrong.
/// @return the arguments, or the status to end with when there is nothing to export: 0 or kWrongUse.
[[nodiscard]] std::variant<ExportArguments, int> readExportArguments(int argc, const char* const* argv);
