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

  /// Whether there is a character of the number. NUL is none in XML, nor are surrogates.
  [[nodiscard]] bool namesCharacter() const {
    return number > 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
  }
};
[[nodiscard]] CharacterReference characterReferenceAt(std::string_view text);

/// Whether any character reference in the text names no character. The tree's parser would end a text at some of them
/// and make other characters of others.
[[nodiscard]] bool refersToNoCharacter(std::string_view text);

/// Whether the text begins with a tag: "<" and a name or a slash. Any other "<" is only a character that should have
/// been written as a reference.
[[nodiscard]] bool startsTag(std::string_view text);

/// Length of the comment, CDATA section or processing instruction that the text begins with; one that has no end goes
/// on to that of the text. 0 when it begins with none.
[[nodiscard]] std::size_t opaqueLength(std::string_view text);

/// A document's text that all parsers read alike, as far as references and document types are concerned.
struct MendedText {
  std::string text;
  bool isGuessed = false;  ///< whether something in it was no XML
  std::string problem;     ///< why its entities cannot be taken in; empty when they can
};

/// The text, which is UTF-8, from the root element on. References to entities that the document declares are replaced;
/// those to external ones, and to no character, are left out. Of the characters "&" and "<" that begin nothing, and
/// of every ">" outside of tags, references are made. Lines keep their numbers, unless an entity has line feeds.
[[nodiscard]] MendedText mendedText(std::string_view text);

}  // namespace xml
