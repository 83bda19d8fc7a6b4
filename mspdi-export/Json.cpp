#include "mspdi-export/Json.h"

#include <fmt/format.h>

#include <cstdint>
#include <iterator>

#include "Platform/Text/Texts.h"

namespace {

void appendEscaped(std::string& to, std::uint32_t code) {
  if (code == '"' || code == '\\') {
    to.append(1, '\\').append(1, static_cast<char>(code));
  } else if (code >= 0x20 && code < 0x7F) {
    to += static_cast<char>(code);
  } else if (code < 0x10000) {
    fmt::format_to(std::back_inserter(to), "\\u{:04x}", code);
  } else {
    const std::uint32_t rest = code - 0x10000;
    fmt::format_to(std::back_inserter(to), "\\u{:04x}\\u{:04x}", 0xD800 + (rest >> 10U), 0xDC00 + (rest & 0x3FFU));
  }
}

std::string quoted(std::string_view text) {
  constexpr std::uint32_t kReplacement = 0xFFFD;
  std::string result = "\"";
  while (!text.empty()) {
    const std::size_t length = platform::utf8CharacterLength(text);
    appendEscaped(result, length == 0 ? kReplacement : platform::characterCode(text));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result + "\"";
}

}  // namespace

void JsonObject::add(std::string_view name, std::string_view text) { addMember(name, quoted(text)); }

void JsonObject::add(std::string_view name, std::size_t number) { addMember(name, fmt::format("{}", number)); }

void JsonObject::add(std::string_view name, double seconds) { addMember(name, fmt::format("{:.3f}", seconds)); }

void JsonObject::add(std::string_view name, const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + quoted(text);
  addMember(name, "[" + list + "]");
}

void JsonObject::add(std::string_view name, const JsonObject& object) { addMember(name, object.text()); }

void JsonObject::addNull(std::string_view name) { addMember(name, "null"); }

void JsonObject::addMember(std::string_view name, const std::string& value) {
  members_ += fmt::format("{}{}: {}", members_.empty() ? "" : ", ", quoted(name), value);
}
