#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <span>
#include <string_view>

namespace conform {

/// The element's own text; empty when it has none, and for an empty view.
[[nodiscard]] inline std::string_view textOf(pugi::xml_node element) { return element.text().get(); }
[[nodiscard]] inline std::string_view textOf(pugi::xml_node parent, const char* name) {
  return textOf(parent.child(name));
}
/// Whether the text has nothing but XML's blanks.
[[nodiscard]] bool isBlank(std::string_view text);
/// The number when the text consists of decimal digits only; beyond 64 bits, their limit. None for any other text.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(std::string_view text);

/// The first child of each name; an empty view where there is none. Finds all in one pass over the children, which is
/// faster than asking for them one by one.
template <typename... Names>
[[nodiscard]] std::array<pugi::xml_node, sizeof...(Names)> childrenOf(pugi::xml_node element, Names... names) {
  const std::array<std::string_view, sizeof...(Names)> wanted{std::string_view(names)...};
  const auto letter = [](const char* name) { return std::uint64_t{1} << (static_cast<unsigned char>(*name) % 64U); };
  const std::uint64_t letters = (letter(names) | ...);
  std::array<pugi::xml_node, sizeof...(Names)> found;
  for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
    if ((letters & letter(child.name())) == 0) continue;
    const std::string_view name = child.name();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      if (name == wanted[i] && !found[i]) found[i] = child;
    }
  }
  return found;
}

/// Sets the child's text.
/// @return whether that changed anything.
bool setText(pugi::xml_node child, std::string_view text);
/// The same; when the child is an empty view, a new child is appended to the parent.
bool setText(pugi::xml_node parent, pugi::xml_node child, const char* name, std::string_view text);

/// Puts the parent's children into this order.
/// @param children all of them.
void putInOrder(pugi::xml_node parent, std::span<const pugi::xml_node> children);

}  // namespace conform
