#include "Platform/XML/XMLStrict.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "Platform/System/Exceptions.h"
#include "Platform/Text/RegularExpression.h"
#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLText.h"

namespace xml {
namespace {

constexpr std::size_t kMaximumDepth = 256;
constexpr std::string_view kBlanks = " \t\r\n";

bool isBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};
/// The characters that a name may begin with.
constexpr auto kNameStarts = std::to_array<Range>({{':', ':'},
                                                   {'A', 'Z'},
                                                   {'_', '_'},
                                                   {'a', 'z'},
                                                   {0xC0, 0xD6},
                                                   {0xD8, 0xF6},
                                                   {0xF8, 0x2FF},
                                                   {0x370, 0x37D},
                                                   {0x37F, 0x1FFF},
                                                   {0x200C, 0x200D},
                                                   {0x2070, 0x218F},
                                                   {0x2C00, 0x2FEF},
                                                   {0x3001, 0xD7FF},
                                                   {0xF900, 0xFDCF},
                                                   {0xFDF0, 0xFFFD},
                                                   {0x10000, 0xEFFFF}});
/// The further characters that a name may go on with.
constexpr auto kNameParts =
    std::to_array<Range>({{'-', '-'}, {'.', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}});
/// The characters that XML allows.
constexpr auto kCharacters =
    std::to_array<Range>({{'\t', '\n'}, {'\r', '\r'}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}});

template <std::size_t N>
bool isIn(const std::array<Range, N>& ranges, std::uint32_t character) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [character](const Range& range) { return character >= range.first && character <= range.last; });
}

/// Whether the text between "&" and ";" is one of XML's own references or names a character of XML.
bool isReference(std::string_view name) {
  if (!name.starts_with('#')) {
    return name == "amp" || name == "lt" || name == "gt" || name == "quot" || name == "apos";
  }
  const bool isHexadecimal = name.starts_with("#x");
  name.remove_prefix(isHexadecimal ? 2 : 1);
  std::uint32_t code = 0;
  for (const char c : name) {
    const std::string_view digits = "0123456789abcdef";
    const std::size_t digit = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c);
    if (digit >= (isHexadecimal ? 16U : 10U) || code > 0x10FFFF) return false;
    code = code * (isHexadecimal ? 16U : 10U) + static_cast<std::uint32_t>(digit);
  }
  return !name.empty() && isIn(kCharacters, code);
}

/// Whether the text, from "<?xml" up to but without "?>", is a declaration.
bool isDeclaration(std::string_view text) {
  constexpr std::size_t kLongest = 200;  // a longer one is never real, and the expression would take long
  static const platform::PosixRegularExpression kPattern(
      R"~(^<[?]xml[[:space:]]+version[[:space:]]*=[[:space:]]*("1[.][0-9]+"|'1[.][0-9]+'))~"
      R"~(([[:space:]]+encoding[[:space:]]*=[[:space:]]*("[A-Za-z][A-Za-z0-9._-]*"|'[A-Za-z][A-Za-z0-9._-]*'))?)~"
      R"~(([[:space:]]+standalone[[:space:]]*=[[:space:]]*("(yes|no)"|'(yes|no)'))?[[:space:]]*$)~");
  return text.size() <= kLongest && !kPattern.match(std::string(text)).empty();
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  void scan() {
    if (const std::size_t bad = firstNonCharacter(text_); bad != std::string_view::npos) {
      at_ = bad;
      fail("it has a character that XML does not have");
    }
    scanDeclaration();
    while (at_ < text_.size()) scanNext();
    if (roots_ == 0) fail("it has no element");
    if (depth_ > 0) fail("an element does not end");
  }

  /// Position of the first character that XML does not allow; npos when there is none.
  static std::size_t firstNonCharacter(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
      const auto byte = static_cast<unsigned char>(text[at]);
      if ((byte >= 0x20 && byte < 0x80) || byte == '\n') {
        ++at;
        continue;
      }
      const std::size_t length = characterLength(text.substr(at));
      if (length == 0) return at;
      at += length;
    }
    return std::string_view::npos;
  }

 private:
  [[noreturn]] void fail(std::string_view reason) const {
    const auto before = text_.substr(0, at_);
    throw platform::Exception("XMLException",
                              fmt::format("line {}: {}", 1 + std::count(before.begin(), before.end(), '\n'), reason));
  }

  [[nodiscard]] std::string_view rest() const { return text_.substr(at_); }
  [[nodiscard]] char here() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void skipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }

  /// Takes the text up to and including the next `end`; fails, naming `what`, when there is none.
  std::string_view takeUntil(std::string_view end, std::string_view what) {
    const std::size_t found = text_.find(end, at_);
    if (found == std::string_view::npos) fail(fmt::format("{} does not end", what));
    const std::string_view taken = text_.substr(at_, found - at_);
    at_ = found + end.size();
    return taken;
  }

  void scanDeclaration() {
    if (!rest().starts_with("<?xml") || text_.size() < 6 || !isBlank(text_[5])) return;
    const std::string_view declaration = takeUntil("?>", "the declaration");
    if (declaration.find('<', 1) != std::string_view::npos) fail("the declaration does not end");
    if (!isDeclaration(declaration)) fail("the declaration is malformed");
  }

  void scanNext() {
    if (here() != '<') {
      scanText();
    } else if (rest().starts_with("<!--")) {
      scanComment();
    } else if (rest().starts_with("<![CDATA[")) {
      if (depth_ == 0) fail("text stands outside the root");
      takeUntil("]]>", "a character section");
    } else if (rest().starts_with("<!DOCTYPE")) {
      fail("it has a document type (<!DOCTYPE)");
    } else if (rest().starts_with("<?")) {
      scanInstruction();
    } else if (rest().starts_with("</")) {
      scanEndTag();
    } else {
      scanTag();
    }
  }

  void scanComment() {
    at_ += 4;
    takeUntil("--", "a comment");
    if (here() != '>') fail("a comment has two dashes");
    ++at_;
  }

  void scanText() {
    const std::size_t end = std::min(text_.find('<', at_), text_.size());
    const std::string_view text = text_.substr(at_, end - at_);
    if (depth_ == 0 && text.find_first_not_of(kBlanks) != std::string_view::npos) fail("text stands outside the root");
    if (text.find("]]>") != std::string_view::npos) fail("a text has \"]]>\"");
    scanReferences(text);
    at_ = end;
  }

  void scanReferences(std::string_view text) const {
    for (std::size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
      // No valid reference is longer. Without this limit, a text of "&" alone would take quadratic time.
      constexpr std::size_t kLongest = 64;
      const std::string_view name = text.substr(at + 1, kLongest);
      const std::size_t end = name.find(';');
      if (end == std::string_view::npos || !isReference(name.substr(0, end))) {
        fail("\"&\" is no reference that XML has");
      }
    }
  }

  void scanInstruction() {
    at_ += 2;
    const std::string_view target = takeName();
    if (platform::lowercased(target) == "xml") fail("an XML declaration stands within");
    if (!isBlank(here()) && !rest().starts_with("?>")) fail("a processing instruction has no name");
    takeUntil("?>", "a processing instruction");
  }

  std::string_view takeName() {
    const std::size_t start = at_;
    while (at_ < text_.size()) {
      const std::uint32_t code = platform::characterCode(rest());
      if (!isIn(kNameStarts, code) && (at_ == start || !isIn(kNameParts, code))) break;
      at_ += platform::utf8CharacterLength(rest());
    }
    if (at_ == start) fail("a name is missing or begins with a wrong character");
    return text_.substr(start, at_ - start);
  }

  void scanEndTag() {
    if (depth_ == 0) fail("an end tag has no start");
    --depth_;
    takeUntil(">", "a tag");
  }

  void scanTag() {
    if (depth_ == 0 && ++roots_ > 1) fail("it has a second root");
    if (++depth_ > kMaximumDepth) fail(fmt::format("elements are nested over {} deep", kMaximumDepth));
    ++at_;
    takeName();
    attributes_.clear();
    while (here() != '>' && !rest().starts_with("/>")) scanAttribute();
    if (here() == '/') {
      --depth_;
      ++at_;
    }
    ++at_;
    requireDifferentAttributes();
  }

  void scanAttribute() {
    if (!isBlank(here())) fail("a tag does not end");
    skipBlanks();
    if (here() == '>' || here() == '/') return;
    attributes_.push_back(takeName());
    skipBlanks();
    if (here() != '=') fail("an attribute has no value");
    ++at_;
    skipBlanks();
    const char quote = here();
    if (quote != '"' && quote != '\'') fail("an attribute's value has no quotes");
    ++at_;
    const std::string_view value = takeUntil({&quote, 1}, "an attribute's value");
    if (value.find('<') != std::string_view::npos) fail("an attribute's value has a \"<\"");
    scanReferences(value);
  }

  void requireDifferentAttributes() {
    if (attributes_.size() < 2) return;
    std::sort(attributes_.begin(), attributes_.end());
    const auto doubled = std::adjacent_find(attributes_.begin(), attributes_.end());
    if (doubled != attributes_.end()) fail(fmt::format("the attribute {} stands twice in a tag", *doubled));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
  std::size_t roots_ = 0;
  std::vector<std::string_view> attributes_;  ///< the names in the current tag
};

/// Turns line ends of every kind into line feeds.
void unifyLineEnds(std::string& text) {
  if (text.find('\r') == std::string::npos) return;
  std::size_t kept = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n') continue;
    text[kept++] = text[at] == '\r' ? '\n' : text[at];
  }
  text.resize(kept);
}

}  // namespace

bool hasOnlyCharacters(std::string_view text) { return Scanner::firstNonCharacter(text) == std::string_view::npos; }

void requireCopyable(std::string& text) {
  unifyLineEnds(text);
  Scanner(text).scan();
}

}  // namespace xml
