#include "mspdi-export/Summary.h"

#include <fmt/format.h>

#include "Platform/System/FileSystem.h"
#include "mspdi-export/Json.h"

namespace {

std::string counted(std::size_t number, const char* noun) {
  return fmt::format("{} {}{}", number, noun, number == 1 ? "" : "s");
}

void addOrNull(JsonObject& object, const char* name, const std::string& text) {
  if (text.empty()) {
    object.addNull(name);
  } else {
    object.add(name, text);
  }
}

}  // namespace

std::string_view nameOf(ExportResult::Status status) {
  switch (status) {
    case ExportResult::Status::kWritten:
      return "written";
    case ExportResult::Status::kChecked:
      return "checked";
    case ExportResult::Status::kFailed:
      return "failed";
  }
  return "";
}

std::string summaryOf(const ExportResult& result, double seconds) {
  const bool isWritten = result.status == ExportResult::Status::kWritten;
  return fmt::format("{}{}: {}, {}, {}, {}, {}, {}; {} ({:.1f} s)", platform::lastPathComponent(result.path),
                     isWritten ? "" : " would be written", counted(result.tasks, "task"), counted(result.links, "link"),
                     counted(result.resources, "resource"), counted(result.assignments, "assignment"),
                     counted(result.calendars, "calendar"), counted(result.baselines, "baseline"),
                     counted(result.warnings.size(), "warning"), seconds);
}

std::string jsonOf(const std::string& bundle, std::string_view status, const ExportResult& result,
                   const OutputFiles& files, double seconds) {
  JsonObject counts;
  counts.add("tasks", result.tasks);
  counts.add("links", result.links);
  counts.add("resources", result.resources);
  counts.add("assignments", result.assignments);
  counts.add("calendars", result.calendars);
  counts.add("baselines", result.baselines);

  JsonObject object;
  object.add("bundle", bundle);
  object.add("status", status);
  addOrNull(object, "output", files.output);
  if (!files.page.empty()) object.add("page", files.page);
  addOrNull(object, "reason", result.reason);
  addOrNull(object, "zone", result.zone);
  object.add("counts", counts);
  object.add("warnings", result.warnings);
  object.add("seconds", seconds);
  return object.text();
}
