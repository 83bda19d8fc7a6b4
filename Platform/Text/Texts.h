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

/// The text with ASCII letters in lower case; everything else stays as it is.
[[nodiscard]] std::string lowercased(std::string_view text);

/// The text without white space and line breaks (Unicode's, not only ASCII's) at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The pieces between newlines (U+000A to U+000D, U+0085, U+2028, U+2029), which point into the text: "a\n\nb" and
/// "a\r\nb" give "a", "", "b". A text without newlines is one piece.
[[nodiscard]] std::vector<std::string_view> splitAtNewlines(std::string_view text);

/// The number that appendEscaped() uses for a byte that is not UTF-8.
inline constexpr std::uint32_t kNoCharacter = 0xFFFFFFFF;
/// Appends the text, with an escape such as "\n", "\x1b" or "\u202e" in place of each character for which
/// isEscaped(number) is true. If isEscaped(kNoCharacter) is true, bytes that are not UTF-8 are escaped as well.
/// @param firstWide the first character that is escaped as "\u0080" and not as "\x80".
void appendEscaped(std::string& to, std::string_view text, bool (*isEscaped)(std::uint32_t character),
                   std::uint32_t firstWide = 0x80);
/// The text on one line, safe to show on a terminal: control characters, line separators, marks that turn the direction
/// of writing, and bytes that are not UTF-8 become escapes such as "\n", "\x1b" and "\u202e".
[[nodiscard]] std::string printable(std::string_view text);

/// The text for messages and labels that may be repeated thousands of times: when longer than 200 bytes, its beginning
/// (whole characters) and "...".
[[nodiscard]] std::string shortened(std::string_view text);

/// Length in bytes of the character that the text begins with; 0 when the text is empty or does not begin with UTF-8.
[[nodiscard]] std::size_t utf8CharacterLength(std::string_view text);
/// The number of the character that the text begins with.
/// @param text valid UTF-8, not empty.
[[nodiscard]] std::uint32_t characterCode(std::string_view text);
/// Whether the bytes are UTF-8.
[[nodiscard]] bool isUTF8(std::string_view bytes);
/// Appends the character's UTF-8 bytes.
/// @param character at most U+10FFFF.
void appendUTF8(std::string& to, char32_t character);
/// The bytes as UTF-8. Bytes that are not UTF-8 are read as windows-1252, which they nearly always are; the five that
/// windows-1252 lacks become U+FFFD.
[[nodiscard]] std::string asUTF8(std::string_view bytes);

/// A number that a text begins with. `length` is the number of bytes read, leading blanks included: " 12 h" gives 12
/// and 3.
template <typename Number>
struct Scanned {
  Number value;
  std::size_t length;
};

/// The whole number that the text begins with: optional blanks, an optional sign, decimal digits: "12.7" gives 12,
/// "12abc" gives 12, "abc" none. A number beyond 64 bits gives the nearest limit. Independent of the locale.
[[nodiscard]] std::optional<Scanned<std::int64_t>> scanInteger(std::string_view text);
/// The decimal number that the text begins with, perhaps with an exponent; infinite beyond the range. "nan" and "inf"
/// give none; of "0x10" only the 0 is read. Independent of the locale.
[[nodiscard]] std::optional<Scanned<double>> scanDouble(std::string_view text);

/// The number that the text begins with; 0 when it begins with none.
[[nodiscard]] std::int64_t integerValue(std::string_view text);
[[nodiscard]] double doubleValue(std::string_view text);

/// The number with this many decimals, rounded to the nearest: fixedPoint(-1.5, 2) is "-1.50".
[[nodiscard]] std::string fixedPoint(double number, int decimals);

/// The number without its fraction: 1.9 gives 1, -1.9 gives -1. Beyond the type's range, its limit; not-a-number gives
/// 0.
template <typename Integer>
[[nodiscard]] Integer truncated(double number) {
  static_assert(std::is_integral_v<Integer>);
  using Limits = std::numeric_limits<Integer>;
  if (std::isnan(number)) return 0;
  if (number <= static_cast<double>(Limits::min())) return Limits::min();
  if (number >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<Integer>(number);
}

/// The number; beyond the range of 64 bits, their limit.
[[nodiscard]] inline std::int64_t saturated(Wide wide) {
  using Limits = std::numeric_limits<std::int64_t>;
  if (wide < Limits::min()) return Limits::min();
  if (wide > Limits::max()) return Limits::max();
  return static_cast<std::int64_t>(wide);
}

}  // namespace platform
