// Golden cases: each folder of Tests/Golden is a whole export. CONTRIBUTING.md says how to make and rewrite one. The
// file `case` has lines "zone=...", "epoch=..." and, if the bundle is elsewhere, "bundle=<path in the source tree>".

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "Tests/Process.h"

namespace fs = std::filesystem;

namespace {

const std::string kTree = MSPDI_SOURCE_FOLDER;
const std::string kCases = kTree + "/Tests/Golden";

std::set<std::string> caseNames() {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(kCases)) {
    if (entry.is_directory()) names.insert(entry.path().filename());
  }
  return names;
}

std::map<std::string, std::string> settingsOf(const std::string& folder) {
  std::map<std::string, std::string> settings;
  std::istringstream lines(contentsOf(folder + "/case"));
  for (std::string line; std::getline(lines, line);) {
    const auto equals = line.find('=');
    settings[line.substr(0, equals)] = line.substr(equals + 1);
  }
  return settings;
}

fs::path bundleOf(const std::string& folder, const std::map<std::string, std::string>& settings) {
  if (const auto elsewhere = settings.find("bundle"); elsewhere != settings.end())
    return kTree + "/" + elsewhere->second;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".kvdx") return entry.path();
  }
  return {};
}

class GoldenTest : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(GoldenTest, MatchesExpected) {
  const std::string folder = kCases + "/" + GetParam();
  const auto settings = settingsOf(folder);
  const fs::path bundle = bundleOf(folder, settings);
  Workplace place;
  place.options.environment["TZ"] = settings.at("zone");
  place.options.environment["SOURCE_DATE_EPOCH"] = settings.at("epoch");
  fs::copy(bundle, place.folder / bundle.filename().string(), fs::copy_options::recursive);

  const ProcessResult result = place.run("'" + bundle.filename().string() + "' out.xml");
  const std::string log = result.log + "status=" + std::to_string(result.status) + "\n";
  const bool written = place.exists("out.xml");

  if (std::getenv("MSPDI_REWRITE_GOLDEN") != nullptr) {
    ASSERT_EQ(std::getenv("CI"), nullptr) << "MSPDI_REWRITE_GOLDEN must not be set in CI";
    writeFile(folder + "/expected.log", log);
    fs::remove(folder + "/expected.xml");
    if (written) fs::copy(place.folder / "out.xml", folder + "/expected.xml");
    GTEST_SKIP() << "the expected files are rewritten";
  }
  EXPECT_EQ(log, contentsOf(folder + "/expected.log"));
  ASSERT_EQ(written, fs::exists(folder + "/expected.xml"));
  if (!written) return;
  const std::string actual = contentsOf(place.folder / "out.xml");
  if (actual == contentsOf(folder + "/expected.xml")) return;
  const std::string kept = (fs::temp_directory_path() / ("mspdi-golden-" + GetParam() + ".xml")).string();
  writeFile(kept, actual);
  ADD_FAILURE() << "the document differs; see: diff '" << folder << "/expected.xml' '" << kept << "'";
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenTest, testing::ValuesIn(caseNames()), [](const auto& test) {
  std::string name = test.param;
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
  return name;
});
