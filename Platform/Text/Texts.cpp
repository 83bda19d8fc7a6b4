#include "Platform/Text/Texts.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <system_error>

namespace platform {
namespace {

/// Every white-space and newline character: ASCII's in one byte, then the others as UTF-8.
constexpr std::array<std::string_view, 25> kWhitespace = {" ",
                                                          "\t",
                                                          "\n",
                                                          "\v",
                                                          "\f",
                                                          "\r",
                                                          "\xC2\x85",
                                                          "\xC2\xA0",
                                                          "\xE1\x9A\x80",
                                                          "\xE2\x80\x80",
                                                          "\xE2\x80\x81",
                                                          "\xE2\x80\x82",
                                                          "\xE2\x80\x83",
                                                          "\xE2\x80\x84",
                                                          "\xE2\x80\x85",
                                                          "\xE2\x80\x86",
                                                          "\xE2\x80\x87",
                                                          "\xE2\x80\x88",
                                                          "\xE2\x80\x89",
                                                          "\xE2\x80\x8A",
                                                          "\xE2\x80\xA8",
                                                          "\xE2\x80\xA9",
                                                          "\xE2\x80\xAF",
                                                          "\xE2\x81\x9F",
                                                          "\xE3\x80\x80"};

constexpr std::array<std::string_view, 7> kNewlines = {"\n",       "\v",           "\f",          "\r",
                                                       "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

std::size_t leadingWhitespace(std::string_view text) {
  std::size_t length = 0;
  // Nearly every text is empty or begins with an ASCII character that is not blank.
  if (text.empty() || text.front() > ' ') return 0;
  for (bool more = true; more;) {
    more = false;
    for (const std::string_view blank : kWhitespace) {
      if (text.substr(length).starts_with(blank)) {
        length += blank.size();
        more = true;
        break;
      }
    }
  }
  return length;
}

/// Whether a decimal number without a sign is below 1. Works for any number of digits.
bool isBelowOne(std::string_view digits) {
  const std::size_t exponentMark = std::min(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, exponentMark);
  const auto point = static_cast<Wide>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<Wide>(mantissa.find_first_not_of("0."));
  const Wide exponent = exponentMark < digits.size() ? integerValue(digits.substr(exponentMark + 1)) : 0;
  return point - first + exponent <= 0;
}

/// Whether a terminal could take the character for a command: to move, to colour, to turn the direction of writing.
/// U+FFFE, U+FFFF and bytes that are not UTF-8 are no characters, and count as well.
bool isCommand(std::uint32_t character) {
  const auto isFrom = [character](std::uint32_t first, std::uint32_t last) {
    return character >= first && character <= last;
  };
  return isFrom(0, 0x1F) || isFrom(0x7F, 0x9F) || isFrom(0x2028, 0x202E) || isFrom(0x2066, 0x2069) ||
         isFrom(0xFFFE, 0xFFFF) || character == kNoCharacter;
}

std::string escapeOf(std::uint32_t character, bool isWide) {
  if (character == '\n') return "\\n";
  if (character == '\t') return "\\t";
  return isWide ? fmt::format("\\u{:04x}", character) : fmt::format("\\x{:02x}", character);
}

bool isPrintableASCII(char c) { return c >= ' ' && c <= '~'; }

/// Without an early exit, the compiler tests many characters at a time.
bool isPrintableASCII(std::string_view text) {
  bool isPrintable = true;
  for (const char c : text) isPrintable &= isPrintableASCII(c);
  return isPrintable;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The character of a byte of at least 0x80 in windows-1252; U+FFFD for the five bytes that have none.
char32_t windows1252(unsigned char byte) {
  constexpr std::array<char16_t, 32> kDifferentFromLatin1 = {
      0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};
  return byte < 0xA0 ? kDifferentFromLatin1.at(byte - 0x80U) : byte;
}

}  // namespace

std::string lowercased(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::string_view trimmed(std::string_view text) {
  text.remove_prefix(leadingWhitespace(text));
  if (text.empty() || text.back() > ' ') return text;
  for (bool more = true; more;) {
    more = false;
    for (const std::string_view blank : kWhitespace) {
      if (text.ends_with(blank)) {
        text.remove_suffix(blank.size());
        more = true;
        break;
      }
    }
  }
  return text;
}

std::vector<std::string_view> splitAtNewlines(std::string_view text) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = text.substr(at);
    const auto* newline = std::find_if(kNewlines.begin(), kNewlines.end(),
                                       [rest](std::string_view candidate) { return rest.starts_with(candidate); });
    if (newline == kNewlines.end()) {
      ++at;
      continue;
    }
    pieces.push_back(text.substr(start, at - start));
    at += newline->size();
    start = at;
  }
  pieces.push_back(text.substr(start));
  return pieces;
}

void appendEscaped(std::string& to, std::string_view text, bool (*isEscaped)(std::uint32_t character),
                   std::uint32_t firstWide) {
  if (isPrintableASCII(text)) {
    to += text;
    return;
  }
  std::size_t plain = 0;  // length of the beginning that needs no escape
  while (plain < text.size()) {
    if (isPrintableASCII(text[plain])) {
      ++plain;
      continue;
    }
    const std::string_view rest = text.substr(plain);
    const std::size_t length = utf8CharacterLength(rest);
    const std::uint32_t character = length == 0 ? kNoCharacter : characterCode(rest);
    const std::size_t size = std::max<std::size_t>(length, 1);
    if (!isEscaped(character)) {
      plain += size;
      continue;
    }
    to += text.substr(0, plain);
    const auto byte = static_cast<unsigned char>(rest[0]);
    to += length == 0 ? escapeOf(byte, false) : escapeOf(character, character >= firstWide);
    text.remove_prefix(plain + size);
    plain = 0;
  }
  to += text;
}

std::string printable(std::string_view text) {
  std::string result;
  appendEscaped(result, text, isCommand);
  return result;
}

std::string shortened(std::string_view text) {
  constexpr std::size_t kMost = 200;
  if (text.size() <= kMost) return std::string(text);
  std::size_t end = kMost;
  while (end > kMost - 4 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::size_t utf8CharacterLength(std::string_view text) {
  const auto at = [text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const unsigned first = at(0);
  if (first < 0x80) return text.empty() ? 0 : 1;
  const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates, and numbers beyond the last character are invalid.
  const unsigned second = at(1);
  if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) || (first == 0xF0 && second < 0x90) ||
      (first == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return length;
}

std::uint32_t characterCode(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) return first;
  const std::size_t length = utf8CharacterLength(text);
  std::uint32_t code = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
  return code;
}

bool isUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    // Most bytes are ASCII, so eight are tested at a time.
    std::uint64_t eight = 0;
    if (bytes.size() >= sizeof eight) {
      std::memcpy(&eight, bytes.data(), sizeof eight);
      if ((eight & 0x8080808080808080U) == 0) {
        bytes.remove_prefix(sizeof eight);
        continue;
      }
    }
    const std::size_t length = utf8CharacterLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

void appendUTF8(std::string& to, char32_t character) {
  const auto append = [&to](char32_t bits) { to += static_cast<char>(bits); };
  const auto appendRest = [&](int shift) { append(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0 | character >> 6);
    return appendRest(0);
  }
  append(character < 0x10000 ? 0xE0 | character >> 12 : 0xF0 | character >> 18);
  if (character >= 0x10000) appendRest(12);
  appendRest(6);
  appendRest(0);
}

std::string asUTF8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = utf8CharacterLength(bytes);
    if (length > 0) {
      text.append(bytes.substr(0, length));
    } else {
      appendUTF8(text, windows1252(static_cast<unsigned char>(bytes[0])));
    }
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

std::optional<Scanned<std::int64_t>> scanInteger(std::string_view text) {
  std::size_t at = leadingWhitespace(text);
  const bool signedNumber = at < text.size() && (text[at] == '+' || text[at] == '-');
  const bool negative = signedNumber && text[at] == '-';
  if (signedNumber) ++at;
  if (at >= text.size() || !isDigit(text[at])) return std::nullopt;
  std::int64_t value = 0;
  const char* first = negative ? text.data() + at - 1 : text.data() + at;
  const auto [end, error] = std::from_chars(first, text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    value = negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
  }
  return Scanned<std::int64_t>{value, static_cast<std::size_t>(end - text.data())};
}

std::optional<Scanned<double>> scanDouble(std::string_view text) {
  std::size_t at = leadingWhitespace(text);
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
  const bool startsNumber =
      at < text.size() && (isDigit(text[at]) || (text[at] == '.' && at + 1 < text.size() && isDigit(text[at + 1])));
  if (!startsNumber) return std::nullopt;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string_view digits(text.data() + at, static_cast<std::size_t>(end - text.data()) - at);
    value = isBelowOne(digits) ? 0.0 : std::numeric_limits<double>::infinity();
  }
  return Scanned<double>{negative ? -value : value, static_cast<std::size_t>(end - text.data())};
}

std::int64_t integerValue(std::string_view text) {
  const auto scanned = scanInteger(text);
  return scanned ? scanned->value : 0;
}

std::string fixedPoint(double number, int decimals) {
  // The largest number has 309 digits.
  std::array<char, 400> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals);
  return {text.data(), result.ptr};
}

double doubleValue(std::string_view text) {
  const auto scanned = scanDouble(text);
  return scanned ? scanned->value : 0.0;
}

}  // namespace platform
