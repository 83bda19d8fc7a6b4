// Runs each target on the files of Fuzz/regressions/<target>/: inputs that fuzzers found, and a few seeds. A target
// raises an exception when one of its properties does not hold.

#include <algorithm>
#include <filesystem>

#include "Fuzz/DateTimeTarget.h"
#include "Fuzz/DriverTarget.h"
#include "Fuzz/ExportTarget.h"
#include "Tests/Support.h"

namespace {

struct Target {
  const char* folder;
  void (*run)(std::string_view input);
};

constexpr std::array kTargets = {
    Target{"datetime", fuzzDateTime},
    Target{"driver", fuzzDriver},
    Target{"export", [](std::string_view input) { static_cast<void>(fuzzExport(input)); }},
};

class FuzzRegressionTest : public testing::TestWithParam<Target> {};

}  // namespace

TEST_P(FuzzRegressionTest, KeepsItsProperties) {
  const PinnedZone zone("UTC");
  const ScopedVariable settings("XDG_CONFIG_HOME", "/nonexistent");
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(MSPDI_SOURCE_FOLDER) + "/Fuzz/regressions/" +
                                                               GetParam().folder)) {
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  ASSERT_FALSE(files.empty());
  for (const auto& file : files) {
    EXPECT_NO_THROW(GetParam().run(contentsOf(file))) << file;
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzRegressionTest, testing::ValuesIn(kTargets),
                         [](const auto& each) { return std::string(each.param.folder); });
