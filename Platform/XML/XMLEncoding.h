#pragma once

#include <string>
#include <string_view>

namespace xml {

/// The text of a document, whatever its encoding.
struct DocumentText {
  std::string text;        ///< UTF-8
  bool isGuessed = false;  ///< the encoding is unusual or unknown, or some bytes are not valid in it
};

/// The encoding that a document's declaration names, in lower case; empty when no name can be read, or when a
/// byte-order mark shows that the document is UTF-8.
/// @param bytes in an encoding in which ASCII characters have their ASCII bytes.
[[nodiscard]] std::string declaredEncoding(std::string_view bytes);

/// Whether the bytes of a document are UTF-8 and not declared to be anything else.
[[nodiscard]] bool isPlainUTF8(std::string_view bytes);

/// The text of the bytes, decoded by the encoding that their beginning shows or declares. When that encoding is unknown
/// or certainly wrong, the bytes are read as UTF-8, and those that are not UTF-8 as windows-1252.
[[nodiscard]] DocumentText documentText(std::string_view bytes);

}  // namespace xml
