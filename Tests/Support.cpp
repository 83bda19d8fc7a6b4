#include "Tests/Support.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Time/Clock.h"
#include "Platform/Time/TimeZone.h"

static void setVariable(const char* name, const std::optional<std::string>& value) {
  if (value) setenv(name, value->c_str(), 1);
  if (!value) unsetenv(name);
  platform::Clock::resetForTesting();
  MSPIUtilities::forgetConversionsForTesting();
}

ScopedVariable::ScopedVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
  if (const char* before = std::getenv(name_.c_str())) before_ = before;
  setVariable(name_.c_str(), value);
}

ScopedVariable::~ScopedVariable() { setVariable(name_.c_str(), before_); }

PinnedZone::PinnedZone(const std::string& name) : variable_("TZ", name) {
  tzset();
  platform::TimeZone::resetSystemForTesting();
}

PinnedZone::~PinnedZone() { platform::TimeZone::resetSystemForTesting(); }

std::shared_ptr<xml::Document> parsed(std::string_view text) {
  std::shared_ptr<xml::Document> document = xml::Document::parse(std::string(text));
  EXPECT_NE(document, nullptr) << text;
  return document;
}

ScratchFolder::ScratchFolder() : path_("/tmp/mspdi-test-XXXXXX") {
  if (const char* temporary = std::getenv("TMPDIR")) path_ = std::string(temporary) + "/mspdi-test-XXXXXX";
  EXPECT_NE(mkdtemp(path_.data()), nullptr);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string repeated(std::string_view text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

std::string numbered(std::string_view format, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += fmt::format(fmt::runtime(format), i);
  return result;
}

void writeFile(const std::string& path, std::string_view contents) {
  platform::createDirectories(platform::deleteLastPathComponent(path));
  std::ofstream(path, std::ios::binary) << contents;
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}
