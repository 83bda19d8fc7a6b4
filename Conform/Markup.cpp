#include "Conform/Markup.h"

#include "Platform/System/Exceptions.h"

namespace conform {

void appendMarkup(pugi::xml_node to, std::string_view markup) {
  if (markup.empty()) return;
  constexpr unsigned kOptions =
      pugi::parse_minimal | pugi::parse_escapes | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;
  const auto result = to.append_buffer(markup.data(), markup.size(), kOptions, pugi::encoding_utf8);
  platform::require(static_cast<bool>(result), "Markup of the copy is malformed: {}.", result.description());
}

bool isAlike(pugi::xml_node one, pugi::xml_node other) {
  if (std::string_view(one.name()) != other.name() || std::string_view(one.child_value()) != other.child_value()) {
    return false;
  }
  pugi::xml_node mine = one.first_child();
  pugi::xml_node theirs = other.first_child();
  while (mine && theirs && isAlike(mine, theirs)) {
    mine = mine.next_sibling();
    theirs = theirs.next_sibling();
  }
  return !mine && !theirs;
}

}  // namespace conform
