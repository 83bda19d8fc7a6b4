#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// What bytes in some encoding say.
struct DecodedText {
  std::string text;      ///< UTF-8
  bool isExact = false;  ///< false when bytes that mean nothing in the encoding became U+FFFD
};

/// The name by which the platform knows an encoding ("utf8" is "UTF-8"); none when it knows no such encoding.
[[nodiscard]] std::optional<std::string> encodingName(const std::string& alias);

/// The text of the bytes. None when the encoding is unknown, or when there are more than 700 MB.
[[nodiscard]] std::optional<DecodedText> decoded(std::string_view bytes, const std::string& encoding);

}  // namespace platform
