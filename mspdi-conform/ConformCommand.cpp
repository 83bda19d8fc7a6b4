#include "mspdi-conform/ConformCommand.h"

#include <fmt/format.h>

#include <memory>
#include <new>

#include "BundleExport/OutputPath.h"
#include "Conform/Copy.h"
#include "Conform/Corrections.h"
#include "Conform/ExportedFile.h"
#include "Conform/Failure.h"
#include "Platform/System/AtomicFile.h"
#include "Platform/System/Console.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"

namespace {

constexpr const char* kUsage = "usage: mspdi-conform IN.xml OUT.xml";

void tell(std::string_view text) { platform::say("mspdi-conform", text); }

std::string folderOf(const std::string& path) {
  const std::string folder = platform::deleteLastPathComponent(path);
  return folder.empty() ? "." : folder;
}

void requireFree(const std::string& output) {
  if (output.empty()) conform::fail("the output has no name");
  if (platform::isNameTaken(output)) conform::fail(output + " exists");
  if (!platform::isDirectory(folderOf(output))) conform::fail("no folder " + folderOf(output));
  requireOutsideBundles(platform::absolutePath(platform::pathOfSystem(folderOf(output))));
}

std::string baseNameOf(const std::string& path) {
  const std::string name = platform::lastPathComponent(path);
  return platform::pathExtension(name) == "xml" ? platform::deletePathExtension(name) : name;
}

std::unique_ptr<conform::Copy> corrected(std::string bytes, const std::string& baseName) {
  std::string text = conform::wellFormedText(std::move(bytes));
  auto copy = std::make_unique<conform::Copy>(std::move(text), nullptr, conform::Options{baseName, "", false});
  conform::correct(*copy);
  return copy;
}

void write(const conform::Copy& copy, const std::string& output) {
  platform::AtomicFile file(output);
  copy.serialize([&file](std::string_view piece) { file.append(piece); });
  switch (file.commit(output)) {
    case platform::AtomicFile::Outcome::kWritten:
      return;
    case platform::AtomicFile::Outcome::kTargetExists:
      conform::fail(output + " exists");
    case platform::AtomicFile::Outcome::kFailed:
      conform::fail(fmt::format("cannot write {}: {}", output, file.failureReason()));
  }
}

}  // namespace

void ConformCommand::copyFile(const std::string& input, const std::string& output) {
  std::string bytes = conform::readExported(input);
  requireFree(output);
  std::unique_ptr<conform::Copy> copy;
  try {
    copy = corrected(std::move(bytes), baseNameOf(input));
  } catch (const platform::Exception& exception) {
    conform::fail(fmt::format("{} cannot be copied: {}", input, exception.reason()));
  }
  for (const std::string& warning : copy->report.warnings()) tell("warning: " + warning);
  write(*copy, output);
}

int ConformCommand::run() {
  if (arguments_.size() == 1 && (arguments_[0] == "-h" || arguments_[0] == "--help")) {
    return platform::writeToStandardOutput(fmt::format("{}\n", kUsage)) ? 0 : 1;
  }
  if (arguments_.size() != 2) {
    tell(kUsage);
    return 1;
  }
  try {
    copyFile(arguments_[0], arguments_[1]);
    return 0;
  } catch (const platform::Exception& exception) {
    tell(exception.reason());
  } catch (const std::bad_alloc&) {
    tell("there is not enough memory for " + arguments_[0]);
  }
  return 1;
}
