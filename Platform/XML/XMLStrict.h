#pragma once

#include <string>
#include <string_view>

namespace xml {

/// Whether the text is UTF-8 and every character one that XML allows.
[[nodiscard]] bool hasOnlyCharacters(std::string_view text);

/// Checks what the tree's parser, which is lenient and would write the faults out again, does not: that the document
/// has one root, no document type, and only valid characters, names and references. The parser itself checks that end
/// tags match. Takes linear time.
/// @param text a whole document in UTF-8, without a byte-order mark. Its carriage returns become line feeds, as XML
/// demands.
/// @throws platform::Exception "XMLException" with the reason and the line; also when elements are nested more than 256
/// deep.
void requireCopyable(std::string& text);

}  // namespace xml
