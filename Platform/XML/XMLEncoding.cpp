#include "Platform/XML/XMLEncoding.h"

#include <array>

#include "Platform/Text/Encodings.h"
#include "Platform/Text/Texts.h"

namespace xml {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kEBCDIC = "IBM037";

/// The encoding that the first bytes show, whatever the declaration says: a byte-order mark, a "<" of two or four
/// bytes, or a "<" of EBCDIC. Empty when they are ASCII.
std::string shownEncoding(std::string_view bytes) {
  struct Beginning {
    std::string_view bytes;
    std::string_view encoding;
  };
  constexpr std::array kBeginnings = {Beginning{"\xFF\xFE\0\0"sv, "UTF-32LE"}, Beginning{"\0\0\xFE\xFF"sv, "UTF-32BE"},
                                      Beginning{"<\0\0\0"sv, "UTF-32LE"},      Beginning{"\0\0\0<"sv, "UTF-32BE"},
                                      Beginning{"\xFF\xFE"sv, "UTF-16LE"},     Beginning{"\xFE\xFF"sv, "UTF-16BE"},
                                      Beginning{"<\0"sv, "UTF-16LE"},          Beginning{"\0<"sv, "UTF-16BE"},
                                      Beginning{"\x4C\x6F\xA7\x94"sv, kEBCDIC}};
  for (const Beginning& beginning : kBeginnings) {
    if (bytes.starts_with(beginning.bytes)) return std::string(beginning.encoding);
  }
  return "";
}

/// Whether bytes that begin with ASCII's "<" are UTF-8 by this declaration. Writers that make texts of two-byte
/// characters often declare those, and then store the text as UTF-8.
bool meansUTF8(const std::string& declared) {
  return declared.empty() || declared == "utf-8" || declared == "utf8" || declared == "us-ascii" ||
         declared.starts_with("utf-16") || declared.starts_with("utf-32");
}

DocumentText fromUTF8(std::string_view bytes, bool isGuessed) {
  return {platform::asUTF8(bytes), isGuessed || !platform::isUTF8(bytes)};
}

/// Decodes a document that does not begin in ASCII.
DocumentText fromShown(std::string_view bytes, std::string encoding) {
  const bool isUnusual = encoding == kEBCDIC;
  if (isUnusual) {
    // All variants of EBCDIC spell the declaration alike, so it can be read before the variant is known; it names the
    // variant.
    const auto beginning = platform::decoded(bytes.substr(0, 200), encoding);
    const auto declared = platform::encodingName(beginning ? declaredEncoding(beginning->text) : "");
    if (declared) encoding = *declared;
  }
  auto decoded = platform::decoded(bytes, encoding);
  if (!decoded) return fromUTF8(bytes, true);
  return {std::move(decoded->text), isUnusual || !decoded->isExact};
}

/// Decodes a document that begins in ASCII.
DocumentText fromDeclared(std::string_view bytes, const std::string& declared) {
  if (meansUTF8(declared)) return fromUTF8(bytes, false);
  const auto encoding = platform::encodingName(declared);
  if (encoding == "UTF-8" || encoding == "US-ASCII") return fromUTF8(bytes, false);
  auto decoded = encoding ? platform::decoded(bytes, *encoding) : std::nullopt;
  // The declaration is wrong when the document cannot even begin in the encoding that it names, or when the document is
  // valid UTF-8 and not valid in that encoding.
  const bool isWrong =
      !decoded || !decoded->text.starts_with("<?xml") || (!decoded->isExact && platform::isUTF8(bytes));
  if (isWrong) return fromUTF8(bytes, true);
  return {std::move(decoded->text), encoding != "ISO-8859-1" || !decoded->isExact};
}

}  // namespace

std::string declaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return "";
  const std::string_view declaration = bytes.substr(0, bytes.find("?>"));
  const std::size_t key = declaration.find("encoding");
  const std::size_t open = key == std::string_view::npos ? key : declaration.find_first_of("\"'", key);
  if (open == std::string_view::npos) return "";
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) return "";
  return platform::lowercased(declaration.substr(open + 1, close - open - 1));
}

bool isPlainUTF8(std::string_view bytes) {
  return shownEncoding(bytes).empty() && meansUTF8(declaredEncoding(bytes)) && platform::isUTF8(bytes);
}

DocumentText documentText(std::string_view bytes) {
  const std::string shown = shownEncoding(bytes);
  return shown.empty() ? fromDeclared(bytes, declaredEncoding(bytes)) : fromShown(bytes, shown);
}

}  // namespace xml
