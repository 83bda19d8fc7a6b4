#include "Platform/XML/XMLText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLEncoding.h"

namespace xml {
namespace {

constexpr std::uint64_t kEachByte = 0x0101010101010101;
constexpr std::uint64_t kHighestBits = kEachByte * 0x80;

/// For eight ASCII bytes: sets the high bit of the first byte equal to c; a borrow may set it in later bytes too.
constexpr std::uint64_t bytesThatAre(char c, std::uint64_t bytes) {
  return (bytes ^ (kEachByte * static_cast<unsigned char>(c))) - kEachByte;
}

constexpr bool isPlain(char c) {
  return static_cast<unsigned char>(c - 0x20) < 0x60 && c != '&' && c != '<' && c != '>';
}

/// isPlain() for eight characters at once.
bool arePlain(const char* characters) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, characters, sizeof bytes);
  // Sets the high bit of each byte below 0x20, by the borrow of the subtraction, and of "&", "<" and ">". "<" and ">"
  // differ in one bit, so setting that bit in all bytes finds both with one test.
  const std::uint64_t special =
      (bytes - kEachByte * 0x20) | bytesThatAre('&', bytes) | bytesThatAre('>', bytes | (kEachByte * ('<' ^ '>')));
  return ((bytes | special) & kHighestBits) == 0;
}

/// Appends the character as it is written in a text or an attribute.
void appendEscaped(std::string& to, char c) {
  switch (c) {
    case '&':
      to += "&amp;";
      break;
    case '<':
      to += "&lt;";
      break;
    case '>':
      to += "&gt;";
      break;
    case '\r':
      to += "&#13;";
      break;
    default:
      to += c;
  }
}

}  // namespace

std::size_t characterLength(std::string_view bytes) {
  const std::size_t length = platform::utf8CharacterLength(bytes);
  const char first = bytes[0];
  if (length == 1 && static_cast<unsigned char>(first) < 0x20 && first != '\t' && first != '\n' && first != '\r')
    return 0;
  const bool isNoncharacter = bytes.starts_with("\xEF\xBF\xBE") || bytes.starts_with("\xEF\xBF\xBF");
  return isNoncharacter ? 0 : length;
}

// Eight bytes at a time, since every text that is written is tested. The last step begins eight bytes before the end,
// so it may test some bytes twice.
bool isPlainText(std::string_view text) {
  constexpr std::size_t kStep = sizeof(std::uint64_t);
  if (text.size() < kStep) return std::all_of(text.begin(), text.end(), isPlain);
  for (std::size_t at = 0; at < text.size(); at += kStep) {
    if (!arePlain(text.data() + std::min(at, text.size() - kStep))) return false;
  }
  return true;
}

std::string charactersOnly(std::string_view text) {
  std::string characters;
  characters.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = characterLength(text.substr(i));
    characters.append(text.substr(i, length));
    i += length == 0 ? 1 : length;
  }
  return characters;
}

std::string escapedText(std::string_view text) {
  std::string escaped;
  for (const char c : charactersOnly(text)) appendEscaped(escaped, c);
  return escaped;
}

std::string escapedAttribute(std::string_view text) {
  std::string escaped;
  for (const char c : escapedText(text)) {
    if (c == '"') {
      escaped += "&quot;";
    } else if (c == '\n' || c == '\t') {
      escaped += c == '\n' ? "&#10;" : "&#9;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string commentText(std::string_view text) {
  std::string comment;
  for (const char c : charactersOnly(text)) {
    if (c == '-' && comment.ends_with('-')) comment += ' ';
    comment += c == '\r' ? '\n' : c;
  }
  if (comment.ends_with('-')) comment += ' ';
  return comment;
}

}  // namespace xml
