#pragma once

#include <string>
#include <string_view>

namespace xml {

/// The text of a document, whatever its encoding.
struct DocumentText {
  std::string text;        ///< UTF-8
  bool isGuessed = false;  ///< whether the encoding is unusual or unknown, or bytes were not in it
};

/// The encoding that a document's declaration names, in lower case; empty when it names none that could be read, or
/// when a mark says that the document is UTF-8.
/// @param bytes in an encoding that has ASCII's bytes.
[[nodiscard]] std::string declaredEncoding(std::string_view bytes);

/// Whether the bytes of a document are UTF-8 and not declared to be anything else.
[[nodiscard]] bool isPlainUTF8(std::string_view bytes);

/// The text of the bytes, in the encoding that their beginning shows or declares. When that is unknown, or wrong for
/// sure, they count as UTF-8. Bytes that are not UTF-8 then are taken for windows-1252.
[[nodiscard]] DocumentText documentText(std::string_view bytes);

}  // namespace xml
