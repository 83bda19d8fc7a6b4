#pragma once

#include <string>
#include <string_view>

namespace xml {

/// The document in UTF-8 without a byte-order mark; the declaration is left as it is. Read are UTF-8 and UTF-16, with
/// or without a mark.
/// @throws platform::Exception "XMLException" when another encoding is declared, or the bytes are not in theirs.
[[nodiscard]] std::string inUTF8(std::string bytes);

}  // namespace xml
