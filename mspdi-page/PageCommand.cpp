#include "mspdi-page/PageCommand.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <optional>
#include <sstream>
#include <string>

#include "BundleExport/OutputPath.h"
#include "Conform/Failure.h"
#include "Page/PageFile.h"
#include "Platform/System/Console.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"

namespace {

constexpr const char* kProgram = "mspdi-page";
constexpr int kWrongUse = 2;

struct Arguments {
  std::string input;
  std::optional<std::string> output;  ///< none to write it beside the input
};

void tell(std::string_view text) { platform::say(kProgram, text); }

/// Writes the page. With a name given by the user, it is written under exactly this name or not at all.
std::string write(const Arguments& arguments) {
  if (arguments.input.empty()) conform::fail("the input has no name");
  const std::string input = platform::absolutePath(platform::pathOfSystem(arguments.input));
  requireOutsideBundles(platform::deleteLastPathComponent(
      platform::absolutePath(platform::pathOfSystem(arguments.output.value_or(arguments.input)))));
  if (!arguments.output) return page::writePageOf(input, page::pagePathOf(input), false);
  if (arguments.output->empty()) conform::fail("the output has no name");
  const std::string output = platform::absolutePath(platform::pathOfSystem(*arguments.output));
  if (platform::isNameTaken(output)) conform::fail(output + " exists");
  return page::writePageOf(input, output, false);
}

/// Reads the command line. Prints help, the version or what is wrong.
/// @return the status to end with; none to continue.
std::optional<int> readArguments(int argc, const char* const* argv, Arguments& arguments) {
  CLI::App app("Writes one HTML page that shows what a reader of a Microsoft Project XML file sees.", kProgram);
  app.add_option("input", arguments.input, "The exported file")->required()->type_name("IN.xml");
  app.add_option("output", arguments.output, "The page, which must not exist; by default IN.html, beside the file")
      ->type_name("OUT.html");
  app.set_version_flag("--version", std::string(kProgram) + " " + MSPDI_VERSION);
  try {
    app.parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream text;
      app.exit(error, text);
      return platform::writeToStandardOutput(text.str()) ? 0 : 1;
    }
    tell(error.what());
    tell("see mspdi-page --help");
    return kWrongUse;
  }
}

}  // namespace

int runPageCommand(int argc, const char* const* argv) {
  Arguments arguments;
  if (const auto status = readArguments(argc, argv, arguments)) return *status;
  try {
    tell(write(arguments) + " written");
    return 0;
  } catch (const platform::Exception& exception) {
    tell(exception.reason());
    return 1;
  }
}
