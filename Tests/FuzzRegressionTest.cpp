// Runs each target on the files of Fuzz/regressions/<target>/: inputs that fuzzers found, and a few seeds. A target
// raises an exception when one of its properties does not hold.

#include <filesystem>
#include <set>

#include "Fuzz/DateTimeTarget.h"
#include "Fuzz/DriverTarget.h"
#include "Fuzz/ExportTarget.h"
#include "Tests/Support.h"

namespace fs = std::filesystem;

TEST(FuzzRegressionTest, KeepsItsProperties) {
  const ScopedVariable settings("XDG_CONFIG_HOME", "/nonexistent");
  for (const auto& [target, run] : std::initializer_list<std::pair<std::string, void (*)(std::string_view)>>{
           {"datetime", fuzzDateTime},
           {"driver", fuzzDriver},
           {"export", [](std::string_view input) { static_cast<void>(fuzzExport(input)); }},
       }) {
    const PinnedZone zone("UTC");
    const fs::directory_iterator folder(MSPDI_SOURCE_FOLDER "/Fuzz/regressions/" + target);
    const std::set<fs::path> files(begin(folder), end(folder));
    EXPECT_FALSE(files.empty()) << target;
    for (const fs::path& file : files) EXPECT_NO_THROW(run(contentsOf(file))) << file;
  }
}
