#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The text of bytes in some encoding.
struct DecodedText {
  std::string text;      ///< UTF-8
  bool isExact = false;  ///< false when bytes that are invalid in the encoding became U+FFFD
};

/// The name by which the platform knows an encoding ("utf8" is "UTF-8"); none when it knows no such encoding, or
/// decoding it would take quadratic time.
[[nodiscard]] std::optional<std::string> encodingName(const std::string& alias);

/// The text of the bytes; none when the encoding is unknown, or there are more than 512 MiB.
[[nodiscard]] std::optional<DecodedText> decoded(std::string_view bytes, const std::string& encoding);

}  // namespace platform
