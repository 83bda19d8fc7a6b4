#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/XML/XMLTree.h"

namespace xml {

/// A name with a small number computed from it, so that most different names can be told apart without comparing texts.
struct Name {
  std::string_view text;
  std::size_t mark = 0;

  constexpr Name() = default;
  constexpr explicit Name(std::string_view name)
      : text(name), mark(name.empty() ? 0 : markOf(name.size(), name.front(), name[name.size() / 2])) {}

 private:
  static constexpr std::size_t markOf(std::size_t size, char first, char middle) {
    return size * 7 + std::size_t{3} * static_cast<unsigned char>(first) + static_cast<unsigned char>(middle);
  }
};

/// A path query, parsed. The forms:
///   type                                              a child
///   project/title                                     a path of children
///   resource[@id='r1']                                a child with an attribute of that value
///   flattened-schedule-day[@date]                     a child with that attribute
///   //project/currency-format                         anywhere in the document
///   //assignment[@idref='r1' and ../@id='t1']         anywhere, with a test on the parent's attribute
/// A value is everything between the outermost quotes, so it may contain quotes. The query points into the given text,
/// which must outlive it. Several matches are usual; the operations of MSPCExtensions.h take the last one:
///
///   <task><title>Old</title><title>New</title></task>     "title" gives "New", and that there were several
///
/// No constructor is explicit, so that mappers can write queries as plain texts.
class Query {
 public:
  /// A literal is parsed at compile time: a mapper asks about thirty queries for each object.
  template <std::size_t N>
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-c-arrays,modernize-avoid-c-arrays): a literal is one
  consteval Query(const char (&text)[N]) : Query(std::string_view(text, N - 1)) {}
  Query(const std::string& text) : Query(std::string_view(text)) {}
  constexpr Query(std::string_view text);

  /// The query name[@attribute='value'], without building that text.
  static constexpr Query child(std::string_view name, std::string_view attribute, std::string_view value);

  /// The name of the elements that it asks for, such as "title" of "project/title".
  [[nodiscard]] constexpr std::string_view name() const { return name_.text; }

  /// Calls visit(node) for each match below the context, in document order.
  template <typename Visit>
  void forEach(Node context, Visit visit) const;

  /// Every match below the context, in document order.
  [[nodiscard]] std::vector<Node> all(Node context) const;
  /// The last match below the context, and whether there were several. Queries by an attribute's value use an index,
  /// which the document builds at the first such query.
  [[nodiscard]] Match last(Node context) const;

 private:
  constexpr Query() = default;

  /// Returns what precedes the separator and leaves what follows it in `text`. Without a separator, returns the whole
  /// text.
  static constexpr std::string_view takeUntil(std::string_view& text, std::string_view separator);

  /// Whether the query asks for children by their name alone.
  [[nodiscard]] bool isPlainName() const { return !anywhere_ && parentPath_.empty() && attribute_.empty(); }
  [[nodiscard]] bool holdsFor(Node node) const;
  [[nodiscard]] bool endsPath(Node node) const;
  /// Whether the query asks for children by an attribute's value, so that the index can answer it.
  [[nodiscard]] bool isLookup() const {
    return !anywhere_ && parentPath_.empty() && hasValue_ && parentAttribute_.empty();
  }

  bool anywhere_ = false;  ///< begins with "//"
  bool hasValue_ = false;
  Name name_;                    ///< the last step
  std::string_view parentPath_;  ///< the steps before the last one, "a/b"
  std::string_view attribute_;   ///< of the predicate; empty without one
  std::string_view value_;
  std::string_view parentAttribute_;  ///< of the predicate's second test, on the parent
  std::string_view parentValue_;
};

constexpr std::string_view Query::takeUntil(std::string_view& text, std::string_view separator) {
  const std::size_t at = text.find(separator);
  const std::string_view head = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + separator.size());
  return head;
}

constexpr Query::Query(std::string_view text) {
  if (text.starts_with("//")) {
    anywhere_ = true;
    text.remove_prefix(2);
  }
  std::string_view path = takeUntil(text, "[@");
  if (const std::size_t slash = path.rfind('/'); slash != std::string_view::npos) {
    parentPath_ = path.substr(0, slash);
    path.remove_prefix(slash + 1);
  }
  name_ = Name(path);
  if (text.empty()) return;

  text.remove_suffix(1);  // the closing bracket
  attribute_ = takeUntil(text, "='");
  hasValue_ = !text.empty();
  if (!hasValue_) return;
  text.remove_suffix(1);  // the closing quote
  if (!anywhere_) {
    value_ = text;
    return;
  }
  value_ = takeUntil(text, "' and ../@");
  if (!text.empty()) {
    parentAttribute_ = takeUntil(text, "='");
    parentValue_ = text;
  }
}

constexpr Query Query::child(std::string_view name, std::string_view attribute, std::string_view value) {
  Query query;
  query.name_ = Name(name);
  query.attribute_ = attribute;
  query.hasValue_ = true;
  query.value_ = value;
  return query;
}

}  // namespace xml
