#pragma once

#include <pugixml.hpp>
#include <string_view>

namespace conform {

/// Parses the markup and appends its elements. For long lists this takes a fraction of the time and memory of making
/// each node.
void appendMarkup(pugi::xml_node to, std::string_view markup);

/// Whether both have the same name, text and children, in the same order.
[[nodiscard]] bool isAlike(pugi::xml_node one, pugi::xml_node other);

}  // namespace conform
