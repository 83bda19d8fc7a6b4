#pragma once

#include <string_view>

namespace page {

/// The file page.html with page.css and page.js in it and the hashes that let a browser trust these two alone. The
/// build makes it (cmake/EmbedPage.cmake). The plan's parts are named in it: {{title}}.
extern const std::string_view kPageSkeleton;

}  // namespace page
