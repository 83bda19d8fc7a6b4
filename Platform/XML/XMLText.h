#pragma once

#include <string>
#include <string_view>

namespace xml {

inline constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
inline constexpr std::string_view kIndent = "  ";  ///< for each level

/// Length of the character that the bytes begin with; 0 when they begin with none that XML allows.
/// @param bytes not empty.
[[nodiscard]] std::size_t characterLength(std::string_view bytes);
/// Whether a text is printable ASCII that needs no escaping between tags. Nearly all texts that are written are.
[[nodiscard]] bool isPlainText(std::string_view text);
/// The text without the characters that XML does not allow, and without bytes that are not UTF-8.
[[nodiscard]] std::string charactersOnly(std::string_view text);
/// The text as it is written between tags. Characters that XML does not allow are left out, here and below. Carriage
/// returns become references: a reader would turn bare ones into line feeds.
[[nodiscard]] std::string escapedText(std::string_view text);
/// The text as it is written between an attribute's double quotes.
[[nodiscard]] std::string escapedAttribute(std::string_view text);
/// The text as it is written in a comment. A comment may contain neither "--" nor references, so "--" becomes "- -" and
/// carriage returns become line feeds.
[[nodiscard]] std::string commentText(std::string_view text);

}  // namespace xml
