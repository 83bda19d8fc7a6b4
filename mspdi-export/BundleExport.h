#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Conform/Copy.h"

/// One bundle on its way to the file that one sends: exported in memory as MSPDIExport does it, corrected, written.
/// Says nothing and leaves alone what the exporter logs.
class BundleExport {
 public:
  /// @param bundle path of the bundle's folder. @param currency ISO 4217 code; empty when not given.
  BundleExport(std::string bundle, std::string currency, bool keepDates);

  struct Result {
    std::string path;  ///< of the file that was written
    std::size_t tasks = 0;
    std::size_t resources = 0;  ///< without the placeholder
    std::size_t assignments = 0;
    std::vector<std::string> warnings;  ///< sentences for people, without a full stop
  };
  /// Exports the bundle to a file that nobody sees before it is whole, and that replaces none.
  /// @param output as OutputPath takes it.
  /// @throws platform::Exception with a reason for people.
  Result writeTo(const std::string& output);

 private:
  /// What an export reads that the corrections need as well, and the exact document.
  struct Exported;
  [[nodiscard]] Exported exportInMemory();
  static std::string write(const conform::Copy& copy, const std::string& path);

  std::string bundle_;
  conform::Options options_;
  std::vector<std::string> warnings_;
};
