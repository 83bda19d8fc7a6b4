#include "mspdi-export/ExportArguments.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <optional>
#include <sstream>
#include <string_view>

#include "Platform/System/Console.h"
#include "Platform/System/FileSystem.h"

namespace {

constexpr const char* kProgram = "mspdi-export";

/// Checks that a currency's code is three letters, and converts it to capitals.
/// @return the error; empty when it is right.
std::string asCurrencyCode(std::string& code) {
  for (char& c : code) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  const bool isCode = code.size() == 3 && code.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == std::string::npos;
  return isCode ? "" : "is no code of three letters, such as EUR";
}

/// Refuses an empty text, which is mostly that of a variable that is not set.
CLI::Validator notEmpty(const char* problem) {
  return {[problem](const std::string& text) { return std::string(text.empty() ? problem : ""); }, ""};
}

void addOptions(CLI::App& app, ExportArguments& arguments) {
  app.add_option("bundles", arguments.bundles,
                 "Plans: .kvdx folders, zip archives of them, or folders that contain them")
      ->required()
      ->type_name("BUNDLE");
  app.add_option("-o,--output", arguments.output, "File to write, or existing folder to write into")
      ->type_name("OUTPUT")
      ->check(notEmpty("the output has no name"));
  app.add_flag("--overwrite", arguments.overwrite, "Replace the file of that name; without it, Plan-1.xml is written");
  app.add_option("--zone", arguments.zone, "Time zone of the dates, or \"machine\"; by default the plan's own")
      ->type_name("NAME")
      ->check(notEmpty("the zone has no name"));
  app.add_option("--currency", arguments.currency, "Currency code (ISO 4217), used when the plan's symbol is ambiguous")
      ->type_name("CODE")
      ->check(CLI::Validator(asCurrencyCode, ""));
  app.add_flag("--keep-dates", arguments.keepDates, "Schedule every task by hand, so that no reader moves it");
  app.add_flag("--page", arguments.page, "Also write an HTML page that shows the plan as it is in the file");
  app.add_flag("--check", arguments.check, "Do everything except writing");
  app.add_flag("--strict", arguments.strict, "Write nothing when there is a warning");
  auto* quiet = app.add_flag("-q,--quiet", arguments.quiet, "Print only errors");
  app.add_flag("-v,--verbose", arguments.verbose, "Also show the exporter's log, and what was corrected")
      ->excludes(quiet);
  app.add_flag("--json", arguments.json, "Write one JSON object for each bundle to standard output");
  app.set_version_flag("--version", std::string(kProgram) + " " + MSPDI_VERSION);
}

/// How many letters must be inserted, removed or changed to turn one text into the other.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

/// The option that was probably meant; none when no option is similar.
std::optional<std::string> nearestOption(const CLI::App& app, std::string_view typed) {
  constexpr std::size_t kMostTypos = 3;
  typed = typed.substr(0, typed.find('='));
  std::optional<std::string> nearest;
  std::size_t least = std::min(kMostTypos, typed.size() / 2) + 1;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      const std::size_t typos = distance(typed, "--" + name);
      if (typos < least) nearest = "--" + name;
      least = std::min(least, typos);
    }
  }
  return nearest;
}

/// Prints what is wrong, and for an unknown option the most similar one.
void tellWrongUse(const CLI::App& app, const CLI::ParseError& error) {
  platform::say(kProgram, error.what());
  for (const std::string& extra : app.remaining()) {
    const auto nearest = extra.starts_with("-") ? nearestOption(app, extra) : std::nullopt;
    if (nearest) platform::say(kProgram, fmt::format("did you mean {} instead of {}?", *nearest, extra));
  }
  platform::say(kProgram, "see mspdi-export --help");
}

}  // namespace

std::variant<ExportArguments, int> readExportArguments(int argc, const char* const* argv) {
  ExportArguments arguments;
  CLI::App app("Exports Korvella plans to Microsoft Project XML files.", kProgram);
  addOptions(app, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream text;
      app.exit(error, text);
      return platform::writeToStandardOutput(text.str()) ? 0 : 1;
    }
    tellWrongUse(app, error);
    return kWrongUse;
  }
  for (std::string& bundle : arguments.bundles) bundle = platform::pathOfSystem(bundle);
  arguments.output = platform::pathOfSystem(arguments.output);
  return arguments;
}
