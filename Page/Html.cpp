#include "Page/Html.h"

namespace page {
namespace {

/// The reference to write for a character that would be markup; empty for any other.
std::string_view referenceTo(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view reference = referenceTo(text[i]);
    if (text[i] == '\r') {
      if (!text.substr(i + 1).starts_with('\n')) result += '\n';
    } else if (reference.empty()) {
      result += text[i];
    } else {
      result += reference;
    }
  }
  return result;
}

}  // namespace page
