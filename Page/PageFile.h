#pragma once

#include <string>

namespace page {

/// The name of a file's page: "Plan.html" beside "Plan.xml".
[[nodiscard]] std::string pagePathOf(const std::string& file);

/// Reads a Microsoft Project XML file and writes the page that shows what a reader of it sees, today by the clock of
/// the machine's zone. The page appears whole or not at all.
/// @param replaces whether a file that has the page's name is replaced; otherwise the page has the next free name,
/// "Plan-1.html".
/// @return the page's path. @throws platform::Exception with a reason for people.
[[nodiscard]] std::string writePageOf(const std::string& file, const std::string& page, bool replaces);

}  // namespace page
