#pragma once

#include <string>
#include <string_view>

namespace xml {

/// The text without what cannot be a character in XML. Gives the text itself when it is clean, as nearly all are;
/// otherwise `storage` holds the result.
[[nodiscard]] std::string_view charactersOnly(std::string_view text, std::string& storage);

/// Whether the tree's parser would take the bytes of a document for UTF-8, which it does unseen.
[[nodiscard]] bool isTakenForUTF8(std::string_view bytes);

/// Whether the tree's parser reads every character of the document right, as far as encodings are concerned: it knows
/// the one declared, the bytes are in it, and no reference names NUL, which would end a text.
[[nodiscard]] bool parserReads(std::string_view bytes);

}  // namespace xml
