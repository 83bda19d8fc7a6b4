#pragma once

#include <string>
#include <string_view>

namespace xml {

inline constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
inline constexpr std::string_view kIndent = "  ";  ///< of each level

/// Length of the character of XML that the bytes begin with, which are at least one; 0 when they begin with none.
[[nodiscard]] std::size_t characterLength(std::string_view bytes);
/// Whether a text has only printable ASCII and nothing to escape between tags, as nearly all that are written have.
[[nodiscard]] bool isPlainText(std::string_view text);
/// The text without what cannot be a character in XML.
[[nodiscard]] std::string charactersOnly(std::string_view text);
/// The text as it is written between tags. What cannot be a character in XML is left out, here and below; carriage
/// returns become references, since a reader would make line feeds of bare ones.
[[nodiscard]] std::string escapedText(std::string_view text);
/// The text as it is written between an attribute's double quotes.
[[nodiscard]] std::string escapedAttribute(std::string_view text);
/// The text as it is written in a comment, which can hold neither two dashes nor references: blanks part the dashes,
/// and carriage returns become line feeds.
[[nodiscard]] std::string commentText(std::string_view text);

}  // namespace xml
