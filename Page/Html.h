#pragma once

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace page {

/// A text of the plan as it is written into the page, between tags as well as between an attribute's quotes. None of
/// its characters is markup then. Carriage returns become line feeds.
/// @param text in UTF-8, of characters that XML has, as every text of a file that was read is.
[[nodiscard]] std::string escaped(std::string_view text);

/// Appends what the format gives.
template <typename... Args>
void add(std::string& to, fmt::format_string<Args...> format, Args&&... args) {
  fmt::format_to(std::back_inserter(to), format, std::forward<Args>(args)...);
}

}  // namespace page
