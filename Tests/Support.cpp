#include "Tests/Support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "KVMSPCommon/MSPImportMapper/MSPIUtilities.h"
#include "Platform/System/FileSystem.h"
#include "Platform/Time/Clock.h"
#include "Platform/Time/TimeZone.h"

ScopedVariable::ScopedVariable(std::string name, const std::optional<std::string>& value) : name_(std::move(name)) {
  if (const char* before = std::getenv(name_.c_str())) before_ = before;
  if (value) {
    setenv(name_.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
  platform::Clock::resetForTesting();
  MSPIUtilities::forgetConversionsForTesting();
}

ScopedVariable::~ScopedVariable() {
  if (before_) {
    setenv(name_.c_str(), before_->c_str(), 1);
  } else {
    unsetenv(name_.c_str());
  }
  platform::Clock::resetForTesting();
  MSPIUtilities::forgetConversionsForTesting();
}

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

void writeFile(const std::string& path, std::string_view contents) {
  platform::createDirectories(platform::deleteLastPathComponent(path));
  std::ofstream(path, std::ios::binary) << contents;
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}
