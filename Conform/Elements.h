#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <pugixml.hpp>
#include <span>
#include <string_view>

namespace conform {

/// The element's own text; empty for none and for an empty view.
[[nodiscard]] inline std::string_view textOf(pugi::xml_node element) { return element.text().get(); }
[[nodiscard]] inline std::string_view textOf(pugi::xml_node parent, const char* name) {
  return textOf(parent.child(name));
}
/// Whether the text has nothing but XML's blanks.
[[nodiscard]] bool isBlank(std::string_view text);
/// The number when the text is nothing but decimal digits; held at the limit of 64 bits.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(std::string_view text);

/// The first child of each name, an empty view for none. In one pass: asked for one by one, each question would go
/// through all children.
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

/// Gives the child the text. @return whether that changed anything.
bool setText(pugi::xml_node child, std::string_view text);
/// The same for a child that may be an empty view, which is then appended to the parent.
bool setText(pugi::xml_node parent, pugi::xml_node child, const char* name, std::string_view text);

/// Lets the parent's children, of which none may be missing, stand in this order.
void putInOrder(pugi::xml_node parent, std::span<const pugi::xml_node> children);

}  // namespace conform
