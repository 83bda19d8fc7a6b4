// Exports one bundle: embedding BUNDLE.kvdx OUTPUT.xml
// Numbers and the time zone belong to the process, so a process exports one bundle.
#include <BundleExport/BundleExport.h>

#include <cstdio>
#include <string>

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  ExportRequest request;
  request.bundle = argv[1];
  request.output = argv[2];
  request.baseName = "Embedded plan";  // the project's title, when the plan has none of its own
  request.log = [](std::string_view record) {
    if (record.starts_with("  Mapping Task ")) std::fputc('.', stderr);  // a dot for each task
  };
  const ExportResult result = exportBundle(request);
  std::fputc('\n', stderr);
  for (const std::string& warning : result.warnings) std::fprintf(stderr, "warning: %s\n", warning.c_str());
  if (result.status == ExportResult::Status::kFailed) {
    std::fprintf(stderr, "%s\n", result.reason.c_str());
    return 1;
  }
  std::printf("%s: %zu tasks, dates of %s\n", result.path.c_str(), result.tasks, result.zone.c_str());
  return 0;
}
