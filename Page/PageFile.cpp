#include "Page/PageFile.h"

#include <fmt/format.h>

#include <new>
#include <string_view>
#include <utility>

#include "Conform/ExportedFile.h"
#include "Conform/Failure.h"
#include "Conform/PlanFile.h"
#include "Page/Page.h"
#include "Platform/System/Exceptions.h"
#include "Platform/System/FileSystem.h"
#include "Platform/System/NewFile.h"
#include "Platform/Time/Clock.h"
#include "Platform/Time/TimeZone.h"

namespace page {
namespace {

conform::PlanFile read(const std::string& path) {
  std::string bytes = conform::readExported(path);
  try {
    return conform::readPlanFile(conform::wellFormedText(std::move(bytes)));
  } catch (const platform::Exception& exception) {
    conform::fail(fmt::format("{} cannot be shown: {}", path, exception.reason()));
  }
}

}  // namespace

std::string pagePathOf(const std::string& file) { return platform::deletePathExtension(file) + ".html"; }

std::string writePageOf(const std::string& file, const std::string& page, bool replaces) try {
  const conform::PlanFile plan = read(file);
  const auto now = platform::TimeZone::system().civilSecondsFromInstant(platform::Clock::now());
  const platform::NewFile written = platform::writeNewFile(page, replaces, [&](platform::AtomicFile& to) {
    writePage(plan, now, [&to](std::string_view piece) { to.append(piece); });
  });
  if (!written.failure.empty()) {
    conform::fail(fmt::format("the file '{}' could not be written: {}", written.path, written.failure));
  }
  return written.path;
} catch (const std::bad_alloc&) {
  conform::fail("there is not enough memory for the page of " + file);
}

}  // namespace page
