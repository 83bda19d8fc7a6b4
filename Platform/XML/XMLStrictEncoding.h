#pragma once

#include <string>
#include <string_view>

namespace xml {

/// The document in UTF-8 without a byte-order mark; its declaration stays as it is. The bytes may be UTF-8 or UTF-16,
/// with or without a mark.
/// @throws platform::Exception "XMLException" when another encoding is declared, or the bytes are not valid in their
/// own.
[[nodiscard]] std::string inUTF8(std::string bytes);

}  // namespace xml
