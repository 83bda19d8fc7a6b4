#include "mspdi-export/ExportArguments.h"

#include <CLI/CLI.hpp>

#include "Platform/System/Console.h"

namespace {

constexpr const char* kProgram = "mspdi-export";
constexpr int kWrongUse = 2;

/// Lets a currency's code be three letters, and makes capitals of them.
std::string asCurrencyCode(std::string& code) {
  for (char& c : code) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  const bool isCode = code.size() == 3 && code.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  return isCode ? "" : "is no code of three letters, such as EUR";
}

}  // namespace

std::variant<ExportArguments, int> readExportArguments(int argc, const char* const* argv) {
  ExportArguments arguments;
  CLI::App app("Exports a Korvella plan as the Microsoft Project XML file that one sends.", kProgram);
  app.add_option("bundle", arguments.bundle, "The plan: a folder whose name ends in .kvdx")
      ->required()
      ->type_name("BUNDLE");
  app.add_option("-o,--output", arguments.output, "File to write, or existing folder to write into")
      ->type_name("OUTPUT");
  app.add_flag("--keep-dates", arguments.keepDates, "Schedule every task by hand, so that no reader moves it");
  app.add_option("--currency", arguments.currency, "Currency, when the plan's symbol does not tell it")
      ->type_name("CODE")
      ->check(CLI::Validator(asCurrencyCode, ""));
  app.set_version_flag("--version", std::string(kProgram) + " " + MSPDI_VERSION);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    platform::say(kProgram, error.what());
    platform::say(kProgram, "see mspdi-export --help");
    return kWrongUse;
  }
  return arguments;
}
