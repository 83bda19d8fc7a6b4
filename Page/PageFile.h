#pragma once

#include <string>

namespace page {

/// The name of a file's page: "Plan.html" beside "Plan.xml".
[[nodiscard]] std::string pagePathOf(const std::string& file);

/// Reads a Microsoft Project XML file and writes its page, with today's date in the machine's zone. The page appears
/// complete or not at all.
/// @param replaces whether an existing file is replaced; otherwise the page gets the next free name, "Plan-1.html".
/// @return the page's path. @throws platform::Exception with a reason for people.
[[nodiscard]] std::string writePageOf(const std::string& file, const std::string& page, bool replaces);

}  // namespace page
