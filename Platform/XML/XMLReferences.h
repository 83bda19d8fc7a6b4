#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace xml {

/// A character reference that a text begins with: "&#65;", "&#x41;".
struct CharacterReference {
  std::size_t length = 0;    ///< in bytes; 0 when the text begins with none
  std::uint32_t number = 0;  ///< held at 32 bits

  /// Whether XML has a character of this number; it has neither NUL nor surrogates.
  [[nodiscard]] bool namesCharacter() const {
    return number > 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
  }
};
[[nodiscard]] CharacterReference characterReferenceAt(std::string_view text);

/// Whether the text has a character reference that names no character, such as "&#0;". The tree's parser would cut a
/// text off at some of these, and read others as wrong characters.
[[nodiscard]] bool refersToNoCharacter(std::string_view text);

/// Whether the text begins with a tag: "<" and a name or a slash. Any other "<" is only a character that should have
/// been written as a reference.
[[nodiscard]] bool startsTag(std::string_view text);

/// Length of the comment, CDATA section or processing instruction that the text begins with, up to the end of the text
/// when it is not closed; 0 when the text begins with none.
[[nodiscard]] std::size_t opaqueLength(std::string_view text);

/// A document's text without document type and entities, so that all parsers read it alike.
struct MendedText {
  std::string text;
  bool isGuessed = false;  ///< whether something in it was not valid XML
  std::size_t added = 0;   ///< bytes that its entities added
  std::string problem;     ///< why its entities cannot be expanded; empty when they can
};

/// The document's text from the root element on. References to declared entities are replaced; references to external
/// ones, and those that name no character, are left out. A bare "&" or "<", and every ">" outside of tags, become
/// references ("&amp;"). Line numbers stay the same unless an entity contains line feeds.
/// @param text UTF-8.
[[nodiscard]] MendedText mendedText(std::string_view text);

}  // namespace xml
