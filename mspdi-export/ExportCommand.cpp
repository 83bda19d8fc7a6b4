#include "mspdi-export/ExportCommand.h"

#include <fmt/format.h>

#include "Platform/System/Console.h"
#include "Platform/System/Exceptions.h"
#include "mspdi-export/BundleExport.h"

namespace {

template <typename... Args>
void tell(fmt::format_string<Args...> format, Args&&... args) {
  platform::say("mspdi-export", fmt::format(format, std::forward<Args>(args)...));
}

/// Of a date that something else than a time follows the exporter says nothing.
std::string reasonOf(const platform::Exception& exception) {
  return exception.reason().empty() ? "a date is followed by something else than a time" : exception.reason();
}

void tellResult(const BundleExport::Result& result) {
  for (const std::string& warning : result.warnings) tell("warning: {}", warning);
  tell("{} written: {} tasks, {} resources, {} assignments, {} warnings", result.path, result.tasks, result.resources,
       result.assignments, result.warnings.size());
}

}  // namespace

int ExportCommand::run() {
  const auto arguments = readExportArguments(argc_, argv_);
  if (const int* status = std::get_if<int>(&arguments)) return *status;
  return exportAndTell(std::get<ExportArguments>(arguments));
}

int ExportCommand::exportAndTell(const ExportArguments& arguments) {
  try {
    tellResult(BundleExport(arguments.bundle, arguments.currency, arguments.keepDates).writeTo(arguments.output));
    return 0;
  } catch (const platform::Exception& exception) {
    tell("{}: {}", arguments.bundle, reasonOf(exception));
    return 1;
  }
}
