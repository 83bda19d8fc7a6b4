#pragma once

#include <string>
#include <variant>

/// What the command line asks for.
struct ExportArguments {
  std::string bundle;
  std::string output;    ///< a file or an existing folder; empty for beside the bundle
  std::string currency;  ///< ISO 4217 code in capitals; empty when not given
  bool keepDates = false;
};

/// Reads the command line. Help, the version and what is wrong are said.
/// @return the arguments, or the status to end with when there is nothing to export: 0 or 2.
[[nodiscard]] std::variant<ExportArguments, int> readExportArguments(int argc, const char* const* argv);
