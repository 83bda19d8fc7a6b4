#pragma once

#include <string>
#include <string_view>

namespace platform {

// Unicode spells many letters in two ways: as one character, or as a letter and its accent behind it.

/// The UTF-8 text with each letter and its accents as one character, as far as there is one (form NFC).
[[nodiscard]] std::string composed(std::string_view text);
/// The UTF-8 text with each letter and its accents as characters of their own (form NFD).
[[nodiscard]] std::string decomposed(std::string_view text);

}  // namespace platform
