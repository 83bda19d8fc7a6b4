#include "Platform/XML/XMLProlog.h"

#include <algorithm>
#include <utility>

#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLReferences.h"
#include "Platform/XML/XMLText.h"

namespace xml {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// The text that replaces references to an entity of this value: character references in it are already replaced.
std::string replacementText(std::string_view value) {
  std::string text;
  while (!value.empty()) {
    const CharacterReference reference = characterReferenceAt(value);
    if (reference.length == 0) {
      text += value.front();
    } else if (reference.namesCharacter()) {
      platform::appendUTF8(text, reference.number);
    }
    value.remove_prefix(std::max<std::size_t>(reference.length, 1));
  }
  return text;
}

class PrologReader {
 public:
  explicit PrologReader(std::string_view text) : rest_(text) {}

  Prolog read() {
    const std::size_t size = rest_.size();
    if (rest_.starts_with("\xEF\xBB\xBF")) drop(3);  // the mark of UTF-8
    for (skip(kBlanks); skipDeclaration() || skipThrough("<!--", "-->") || skipThrough("<?", "?>") || readType();) {
      skip(kBlanks);
    }
    prolog_.length = size - rest_.size();
    return std::move(prolog_);
  }

 private:
  void skip(std::string_view characters) { drop(rest_.find_first_not_of(characters)); }
  void drop(std::size_t length) { rest_.remove_prefix(std::min(length, rest_.size())); }
  void dropThrough(std::string_view end) {
    const std::size_t at = rest_.find(end);
    drop(at == std::string_view::npos ? at : at + end.size());
  }

  /// Skips "<?xml ...?>". Also accepts one that ends in ">" alone, since some programs forget the second question mark.
  bool skipDeclaration() {
    if (!rest_.starts_with("<?xml ")) return false;
    dropThrough(">");
    return true;
  }

  /// Returns false when the text does not begin with `begin`, or `end` is missing.
  bool skipThrough(std::string_view begin, std::string_view end) {
    if (!rest_.starts_with(begin)) return false;
    const std::size_t at = rest_.find(end, begin.size());
    if (at == std::string_view::npos) return false;
    drop(at + end.size());
    return true;
  }

  /// Takes a quoted text and returns what stands between the quotes. Without a closing quote, takes only the opening
  /// one.
  std::string_view takeQuoted() {
    const std::size_t close = rest_.find(rest_.front(), 1);
    const std::string_view quoted = close == std::string_view::npos ? "" : rest_.substr(1, close - 1);
    drop(close == std::string_view::npos ? 1 : close + 1);
    return quoted;
  }
  [[nodiscard]] bool isAtQuote() const { return rest_.starts_with('"') || rest_.starts_with('\''); }

  bool readType() {
    if (!rest_.starts_with("<!DOCTYPE")) return false;
    prolog_.hasDocumentType = true;
    while (!rest_.empty() && !startsTag(rest_)) {
      const bool isEnd = rest_.front() == '>';
      if (isAtQuote()) {
        takeQuoted();
      } else if (rest_.front() == '[') {
        readSubset();
      } else {
        drop(1);
      }
      if (isEnd) return true;
    }
    prolog_.isMalformed = true;
    return true;
  }

  /// Reads what stands between the brackets: declarations, comments, references to parameter entities.
  void readSubset() {
    while (!rest_.empty() && !startsTag(rest_)) {
      const bool isEnd = rest_.front() == ']';
      if (const std::size_t length = opaqueLength(rest_); length > 0) {
        drop(length);
      } else if (rest_.starts_with("<!ENTITY")) {
        readEntity();
      } else if (rest_.starts_with("<!")) {
        dropMarkup();
      } else {
        drop(1);
      }
      if (isEnd) return;
    }
  }

  void readEntity() {
    drop(std::string_view("<!ENTITY").size());
    skip(kBlanks);
    const std::string_view name = rest_.substr(0, rest_.find_first_of(" \t\r\n\"'>"));
    drop(name.size());
    skip(kBlanks);
    // For a parameter entity, the name read here is "%", which no reference in the document can have.
    prolog_.entities.try_emplace(std::string(name), isAtQuote() ? replacementText(takeQuoted()) : "");
    dropMarkup();
  }

  /// Skips a declaration, including its ">".
  void dropMarkup() {
    while (!rest_.empty() && rest_.front() != '>') {
      if (isAtQuote()) {
        takeQuoted();
      } else {
        drop(1);
      }
    }
    drop(1);
  }

  std::string_view rest_;
  Prolog prolog_;
};

}  // namespace

Prolog prologOf(std::string_view text) { return PrologReader(text).read(); }

}  // namespace xml
