#include "Platform/XML/XMLReferences.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

#include "Platform/XML/XMLProlog.h"
#include "Platform/XML/XMLText.h"

namespace xml {
namespace {

constexpr std::size_t kMaximumGrowth = 10;  ///< how many times larger its entities may make a document
constexpr int kMaximumDepth = 20;           ///< how deep entities may be nested in entities

bool isNameStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
         static_cast<unsigned char>(c) > 127;
}
bool isNameCharacter(char c) { return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

bool isPredefined(std::string_view entity) {
  return entity == "amp" || entity == "lt" || entity == "gt" || entity == "quot" || entity == "apos";
}

/// Length of the reference to an entity that the text begins with, "&name;"; 0 when it begins with none.
std::size_t entityReferenceLength(std::string_view text) {
  if (text.size() < 2 || !isNameStart(text[1])) return 0;
  const auto* const end = std::find_if_not(text.begin() + 1, text.end(), isNameCharacter);
  return end != text.end() && *end == ';' ? static_cast<std::size_t>(end - text.begin()) + 1 : 0;
}

/// Rewrites a document's text. Each operation removes from the front of the given text what it has rewritten.
class Mender {
 public:
  Mender(const Entities& entities, std::size_t maximum) : entities_(entities), maximum_(maximum) {}

  void addContent(std::string_view text) {
    while (!text.empty() && result_.problem.empty()) {
      addCharacters(text);
      if (text.starts_with('&')) addReference(text, &Mender::addContent);
      if (text.starts_with('<')) addMarkup(text);
    }
  }
  [[nodiscard]] MendedText take() {
    result_.added = grown_;
    return std::move(result_);
  }

 private:
  using Add = void (Mender::*)(std::string_view text);

  void copy(std::string_view& text, std::size_t length) {
    result_.text += text.substr(0, length);
    text.remove_prefix(std::min(length, text.size()));
  }
  void replace(std::string_view& text, std::size_t length, std::string_view replacement) {
    result_.text += replacement;
    text.remove_prefix(length);
    if (depth_ > 0) grow(replacement.size() - std::min(replacement.size(), length));
  }
  /// Counts what entities add. Their quotes and brackets grow again when they are rewritten.
  void grow(std::size_t bytes) {
    grown_ += bytes;
    if (grown_ > maximum_) result_.problem = "its entities expand to more than ten times its size";
  }

  /// Rewrites characters up to the next reference or markup.
  void addCharacters(std::string_view& text) {
    for (copy(text, text.find_first_of("<&>")); text.starts_with('>'); copy(text, text.find_first_of("<&>"))) {
      replace(text, 1, "&gt;");
    }
  }

  void addMarkup(std::string_view& text) {
    if (startsTag(text)) return addTag(text);
    if (const std::size_t length = opaqueLength(text); length > 0) return copy(text, length);
    replace(text, 1, "&lt;");
    result_.isGuessed = true;
  }

  /// Rewrites a tag, including its ">"; when that is missing, up to the next tag.
  void addTag(std::string_view& text) {
    copy(text, 1);
    while (result_.problem.empty()) {
      copy(text, text.find_first_of("\"'<>&"));
      if (text.empty() || text.front() == '<') return;
      if (text.front() == '>') return copy(text, 1);
      if (text.front() == '&') {
        addReference(text, &Mender::addContent);
      } else {
        addValue(text);
      }
    }
  }

  /// Rewrites an attribute's value, including the closing quote; when that is missing, up to the next tag.
  void addValue(std::string_view& text) {
    const std::array<char, 3> ends = {text.front(), '<', '&'};
    copy(text, 1);
    while (result_.problem.empty()) {
      copy(text, text.find_first_of(ends.data(), 0, ends.size()));
      if (!text.starts_with('&')) return copy(text, text.starts_with(ends[0]) ? 1 : 0);
      addReference(text, &Mender::addQuoted);
    }
  }

  /// Rewrites an entity's replacement text inside an attribute's value, where quotes do not end the value and "<"
  /// begins no tag.
  void addQuoted(std::string_view text) {
    while (!text.empty() && result_.problem.empty()) {
      copy(text, text.find_first_of("\"'<&"));
      if (text.starts_with('&')) {
        addReference(text, &Mender::addQuoted);
      } else if (!text.empty()) {
        replace(text, 1, text[0] == '<' ? "&lt;" : text[0] == '"' ? "&quot;" : "&apos;");
      }
    }
  }

  /// Rewrites a reference. For a declared entity, calls `add` with its replacement text.
  void addReference(std::string_view& text, Add add) {
    if (const CharacterReference character = characterReferenceAt(text); character.length > 0) {
      if (character.namesCharacter()) return copy(text, character.length);
      if (character.number == 0) result_.isGuessed = true;
      return replace(text, character.length, "");
    }
    const std::size_t length = entityReferenceLength(text);
    const std::string_view name = text.substr(1, std::max<std::size_t>(length, 2) - 2);
    if (isPredefined(name)) return copy(text, length);
    const auto entity = length == 0 ? entities_.end() : entities_.find(name);
    if (entity == entities_.end()) return replace(text, 1, "&amp;");
    text.remove_prefix(length);
    expand(entity->second, add);
  }

  void expand(const std::string& replacement, Add add) {
    grow(replacement.size());
    if (depth_ == kMaximumDepth) result_.problem = "its entities are nested more than 20 deep";
    if (!result_.problem.empty()) return;
    ++depth_;
    (this->*add)(replacement);
    --depth_;
  }

  const Entities& entities_;
  std::size_t maximum_;
  std::size_t grown_ = 0;
  int depth_ = 0;
  MendedText result_;
};

}  // namespace

CharacterReference characterReferenceAt(std::string_view text) {
  if (!text.starts_with("&#")) return {};
  const bool isHexadecimal = text.substr(2).starts_with('x');
  const char* const first = text.data() + (isHexadecimal ? 3 : 2);
  const char* const last = text.data() + text.size();
  CharacterReference reference;
  const auto [end, error] = std::from_chars(first, last, reference.number, isHexadecimal ? 16 : 10);
  if (end == first || end == last || *end != ';') return {};
  if (error == std::errc::result_out_of_range) reference.number = std::numeric_limits<std::uint32_t>::max();
  reference.length = static_cast<std::size_t>(end - text.data()) + 1;
  return reference;
}

bool refersToNoCharacter(std::string_view text) {
  for (std::size_t at = text.find("&#"); at != std::string_view::npos; at = text.find("&#", at + 2)) {
    const CharacterReference reference = characterReferenceAt(text.substr(at));
    if (reference.length > 0 && !reference.namesCharacter()) return true;
  }
  return false;
}

bool startsTag(std::string_view text) {
  return text.size() > 1 && text[0] == '<' && (isNameStart(text[1]) || text[1] == '/');
}

std::size_t opaqueLength(std::string_view text) {
  struct Kind {
    std::string_view begin;
    std::string_view end;
  };
  constexpr std::array kKinds = {Kind{"<!--", "-->"}, Kind{"<![CDATA[", "]]>"}, Kind{"<?", "?>"}};
  for (const Kind& kind : kKinds) {
    if (!text.starts_with(kind.begin)) continue;
    if (kind.begin == "<?" && (text.size() < 3 || !isNameStart(text[2]))) return 0;
    const std::size_t end = text.find(kind.end, kind.begin.size());
    return end == std::string_view::npos ? text.size() : end + kind.end.size();
  }
  return 0;
}

MendedText mendedText(std::string_view text) {
  const std::string characters = charactersOnly(text);
  const Prolog prolog = prologOf(characters);
  const std::string_view whole = characters;
  const std::string_view inFront = whole.substr(0, prolog.length);
  Mender mender(prolog.entities, whole.size() * kMaximumGrowth);
  mender.addContent(whole.substr(prolog.length));
  MendedText result = mender.take();
  result.text.insert(0, static_cast<std::size_t>(std::count(inFront.begin(), inFront.end(), '\n')), '\n');
  if (prolog.isMalformed || text.find('\0') != std::string_view::npos) result.isGuessed = true;
  return result;
}

}  // namespace xml
