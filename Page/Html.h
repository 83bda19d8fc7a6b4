#pragma once

#include <fmt/format.h>

#include <iterator>
#include <string>
#include <string_view>
#include <utility>

namespace page {

/// The text with all markup characters replaced by references, so that it can be written between tags and inside an
/// attribute's quotes. Carriage returns become line feeds.
/// @param text in UTF-8 and without characters that XML does not allow; every text of a file that was read is.
[[nodiscard]] std::string escaped(std::string_view text);

/// Formats as fmt does, and appends the result.
template <typename... Args>
void add(std::string& to, fmt::format_string<Args...> format, Args&&... args) {
  fmt::format_to(std::back_inserter(to), format, std::forward<Args>(args)...);
}

}  // namespace page
