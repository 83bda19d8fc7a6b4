#pragma once

#include <string_view>

namespace page {

/// The file page.html with page.css and page.js embedded, and with their hashes, so that a browser runs and applies
/// only these two. The build generates it (cmake/EmbedPage.cmake). It contains names such as {{title}}, to be replaced
/// by the plan's parts.
extern const std::string_view kPageSkeleton;

}  // namespace page
