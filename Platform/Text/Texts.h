#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Platform/Base/Wide.h"

namespace platform {

/// ASCII letters in lower case, everything else as it is.
[[nodiscard]] std::string lowercased(std::string_view text);

/// The text without white space and line breaks (Unicode's, not only ASCII's) at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The pieces between newlines (U+000A to U+000D, U+0085, U+2028, U+2029), empty ones included; a text without newlines
/// is one piece. The pieces point into the text.
[[nodiscard]] std::vector<std::string_view> splitAtNewlines(std::string_view text);

/// The number that appendEscaped() uses for a byte that is not UTF-8.
inline constexpr std::uint32_t kNoCharacter = 0xFFFFFFFF;
/// Appends the text, with an escape such as "\n", "\x1b" or "\u202e" in place of each character for which
/// isEscaped(number) is true. If isEscaped(kNoCharacter) is true, bytes that are not UTF-8 are escaped as well.
/// @param firstWide the first character that is escaped as "\u0080" and not as "\x80".
void appendEscaped(std::string& to, std::string_view text, bool (*isEscaped)(std::uint32_t character),
                   std::uint32_t firstWide = 0x80);
/// The text on one line that a terminal can be trusted with: control characters, line separators and what is not a
/// character or UTF-8 as escapes such as "\n", "\x1b" and "\u202e".
[[nodiscard]] std::string printable(std::string_view text);

/// The text for a message that may come thousands of times: of more than 200 bytes the beginning, up to a whole
/// character, and "...".
[[nodiscard]] std::string shortened(std::string_view text);

/// Length of the character that the UTF-8 text begins with; 0 when the bytes are not UTF-8, or there are none.
[[nodiscard]] std::size_t utf8CharacterLength(std::string_view text);
/// The number of the character that the UTF-8 text begins with, which has one at least.
[[nodiscard]] std::uint32_t characterCode(std::string_view text);
/// Whether the bytes are UTF-8.
[[nodiscard]] bool isUTF8(std::string_view bytes);
/// Appends the character's UTF-8 bytes. It must not be beyond U+10FFFF.
void appendUTF8(std::string& to, char32_t character);
/// The bytes as UTF-8: those that are not are taken for windows-1252, which they nearly always are. The five bytes that
/// windows-1252 does not know become U+FFFD.
[[nodiscard]] std::string asUTF8(std::string_view bytes);

/// A number that a text begins with: `length` bytes of the text, leading blanks included, were read for it.
template <typename Number>
struct Scanned {
  Number value;
  std::size_t length;
};

/// The whole number that the text begins with: leading blanks, an optional sign, decimal digits; held at the limits of
/// 64 bits. None without digits. Independent of the locale.
[[nodiscard]] std::optional<Scanned<std::int64_t>> scanInteger(std::string_view text);
/// The decimal number that the text begins with, an exponent allowed; infinite beyond the range. Not a number are
/// "nan", "inf" and hexadecimal forms. Independent of the locale.
[[nodiscard]] std::optional<Scanned<double>> scanDouble(std::string_view text);

/// The number that the text begins with; 0 when it begins with none.
[[nodiscard]] std::int64_t integerValue(std::string_view text);
[[nodiscard]] double doubleValue(std::string_view text);

/// The number with so many decimals, rounded to the nearest: "-1.50".
[[nodiscard]] std::string fixedPoint(double number, int decimals);

/// The number without its fraction, held at the limits of the type; not-a-number gives 0.
template <typename Integer>
[[nodiscard]] Integer truncated(double number) {
  static_assert(std::is_integral_v<Integer>);
  using Limits = std::numeric_limits<Integer>;
  if (std::isnan(number)) return 0;
  if (number <= static_cast<double>(Limits::min())) return Limits::min();
  if (number >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<Integer>(number);
}

/// The wide intermediate result held at the limits of 64 bits.
[[nodiscard]] inline std::int64_t saturated(Wide wide) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (wide < Limits::min()) return Limits::min();
  if (wide > Limits::max()) return Limits::max();
  return static_cast<std::int64_t>(wide);
}

}  // namespace platform
