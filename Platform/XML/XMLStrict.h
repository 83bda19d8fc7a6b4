#pragma once

#include <string>
#include <string_view>

namespace xml {

/// Whether every character of the text is one that XML has, in UTF-8.
[[nodiscard]] bool hasOnlyCharacters(std::string_view text);

/// Makes sure that a document can be copied by the tree's parser, which is lenient and writes what it read: that it has
/// one root, no document type, and nothing but characters, names and references of XML. That end tags fit is left to
/// the parser. In time that grows with the text.
/// @param text a whole document in UTF-8, without a byte-order mark. Carriage returns become line feeds, as XML wants
/// it.
/// @throws platform::Exception "XMLException" with the reason and the line, also when elements are nested over 256
/// deep.
void requireCopyable(std::string& text);

}  // namespace xml
