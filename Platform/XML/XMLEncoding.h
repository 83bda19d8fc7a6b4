#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace xml {

/// The encoding that a document's declaration names, in lower case; empty when it names none that could be read.
/// @param bytes in an encoding that has ASCII's bytes.
[[nodiscard]] std::string declaredEncoding(std::string_view bytes);

/// The document in UTF-8 without a byte-order mark; the declaration is left as it is. Read are UTF-8 and UTF-16, with
/// or without a mark.
/// @throws platform::Exception "XMLException" when another encoding is declared, or the bytes are not in theirs.
[[nodiscard]] std::string inUTF8(std::string bytes);

}  // namespace xml
