#include "Platform/System/URL.h"

#include <charconv>

#include "Platform/System/FileSystem.h"
#include "Platform/Text/Texts.h"

namespace platform {
namespace {

constexpr std::string_view kFileScheme = "file://";

std::string percentEncoded(std::string_view path) {
  // Besides letters and digits, a URL's path may contain these unescaped: unreserved characters, sub-delimiters, ":",
  // "@" and the slash.
  constexpr std::string_view kPlain = "-._~!$&'()*+,;=:@/";
  constexpr std::string_view kHex = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : path) {
    const auto byte = static_cast<unsigned char>(c);
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
        kPlain.find(c) != std::string_view::npos) {
      encoded += c;
    } else {
      encoded += '%';
      encoded += kHex[byte >> 4];
      encoded += kHex[byte & 15];
    }
  }
  return encoded;
}

std::string percentDecoded(std::string_view text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned byte = 0;
    const char* digits = text.data() + i + 1;
    if (text[i] == '%' && i + 2 < text.size() && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      decoded += static_cast<char>(byte);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

}  // namespace

URL::URL(std::string_view text) : text_(text) {
  if (!text.starts_with(kFileScheme)) return;
  text.remove_prefix(kFileScheme.size());
  const std::string_view host = text.substr(0, text.find('/'));
  isFileURL_ = host.empty() || lowercased(host) == "localhost";
  if (isFileURL_) path_ = standardizePath(percentDecoded(text.substr(host.size())));
}

URL URL::fileURLWithPath(std::string_view path, bool isDirectory) {
  URL url(kFileScheme);
  url.path_ = absolutePath(path);
  url.text_ = std::string(kFileScheme) + percentEncoded(url.path_);
  if (isDirectory && !url.text_.ends_with('/')) url.text_ += '/';
  return url;
}

}  // namespace platform
