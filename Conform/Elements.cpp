#include "Conform/Elements.h"

#include <algorithm>

#include "Platform/Text/Texts.h"

namespace conform {

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

std::optional<std::int64_t> wholeNumber(std::string_view text) {
  const bool isDigits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (text.empty() || !isDigits) return std::nullopt;
  return platform::integerValue(text);
}

bool setText(pugi::xml_node child, std::string_view text) {
  if (textOf(child) == text) return false;
  child.text().set(text.data(), text.size());
  return true;
}

bool setText(pugi::xml_node parent, pugi::xml_node child, const char* name, std::string_view text) {
  if (child) return setText(child, text);
  parent.append_child(name).text().set(text.data(), text.size());
  return true;
}

void putInOrder(pugi::xml_node parent, std::span<const pugi::xml_node> children) {
  pugi::xml_node previous;
  for (const pugi::xml_node child : children) {
    if (!previous) {
      if (parent.first_child() != child) parent.prepend_move(child);
    } else if (previous.next_sibling() != child) {
      parent.insert_move_after(child, previous);
    }
    previous = child;
  }
}

}  // namespace conform
