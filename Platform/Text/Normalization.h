#pragma once

#include <string>
#include <string_view>

namespace platform {

// Unicode has two spellings for many letters: "é" is one character, or an "e" followed by an accent.
// Texts over 1024 bytes stay as they are.

/// The UTF-8 text with letters and accents as one character wherever there is one (form NFC).
[[nodiscard]] std::string composed(std::string_view text);
/// The UTF-8 text with letters and accents as separate characters (form NFD).
[[nodiscard]] std::string decomposed(std::string_view text);

}  // namespace platform
