#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pugi {
struct xml_node_struct;
struct xml_attribute_struct;
}  // namespace pugi

namespace xml {

class Document;
class Query;

/// A borrowed view of an attribute; may be empty, and then reads as empty texts.
class Attribute {
 public:
  Attribute() = default;
  explicit operator bool() const { return attribute_ != nullptr; }
  [[nodiscard]] std::string_view name() const;
  [[nodiscard]] std::string_view value() const;
  /// The attribute written as XML: name="value", with the value escaped.
  [[nodiscard]] std::string markup() const;

 private:
  friend class Node;
  explicit Attribute(pugi::xml_attribute_struct* attribute) : attribute_(attribute) {}
  pugi::xml_attribute_struct* attribute_ = nullptr;
};

/// What a query found: the last match in document order, and how many there were (2 stands for "several").
struct Match;

/// A borrowed view of a node of a document: small, copied by value, valid while the document lives. A view may be
/// empty: reading an empty one gives neutral results.
class Node {
 public:
  Node() = default;
  explicit operator bool() const { return node_ != nullptr; }
  friend bool operator==(const Node& a, const Node& b) { return a.node_ == b.node_; }

  [[nodiscard]] bool isElement() const;
  /// The name as written, its prefix included; namespaces are not looked at.
  [[nodiscard]] std::string_view name() const;
  /// The texts of the node and its descendants, one after the other, blanks between them included.
  [[nodiscard]] std::string stringValue() const;
  /// The same; valid while the document lives.
  [[nodiscard]] std::string_view stringView() const;
  /// The attribute with exactly this name.
  [[nodiscard]] Attribute attribute(std::string_view name) const;
  /// Its value; none when there is no such attribute.
  [[nodiscard]] std::optional<std::string> attributeText(std::string_view name) const;
  [[nodiscard]] Node parent() const;
  /// The node written as XML, on one line as far as its texts allow.
  [[nodiscard]] std::string markup() const;
  /// How many bytes the node takes as XML, about: what it costs to read it. Takes time that grows with them.
  [[nodiscard]] std::size_t size() const;
  /// An address that tells this node from every other.
  [[nodiscard]] const void* identity() const { return node_; }

 private:
  friend class Document;
  friend class Query;
  Node(pugi::xml_node_struct* node, Document* document) : node_(node), document_(document) {}

  pugi::xml_node_struct* node_ = nullptr;
  Document* document_ = nullptr;
};

struct Match {
  Node last;
  int count = 0;
};

struct Reading;

/// An XML document that was read: owns every node in it. Not movable, because views point to it.
class Document {
 public:
  /// A document of nothing; parse() makes those that are read.
  Document();
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// Gives the bytes of a document once more; none when they cannot be had any longer.
  using Source = std::function<std::string()>;

  /// Reads a document: as it stands when it is well-formed UTF-8, otherwise as far as its encoding can be guessed and
  /// its markup repaired. Entities that it declares itself are expanded, at most to ten times its size; nothing is
  /// fetched.
  /// @param again is asked when the bytes have to be gone through a second time, which may be as long as the document
  /// lives: reading works inside them and spoils them.
  [[nodiscard]] static Reading read(std::string bytes, Source again);
  /// The same for bytes that stay in memory for it.
  [[nodiscard]] static Reading read(std::string bytes);
  /// The document that the bytes hold; none when anything in them has to be guessed or repaired.
  [[nodiscard]] static std::unique_ptr<Document> parse(std::string bytes);

  /// What an excerpt keeps of the root's children that have the name: these of their own children, and the attribute
  /// when there is one.
  struct Kept {
    std::string_view name;
    std::string_view attribute;
    std::vector<std::string_view> children;
  };
  /// A smaller document, in which queries for what is kept find the same. Other attributes are only kept in the
  /// innermost elements; children of the root without the attribute are left out.
  /// @return none when a kept child holds more than a text: its blanks could get lost.
  [[nodiscard]] std::unique_ptr<Document> excerpt(const std::vector<Kept>& rows) const;

  /// The root element; an empty view when the document has none.
  [[nodiscard]] Node root() const;

  /// The document as well-formed UTF-8 XML, piece by piece: declaration, then the tree indented by two blanks.
  void serialize(const std::function<void(std::string_view)>& sink) const;

 private:
  friend class Node;
  friend class Query;
  struct Tree;

  [[nodiscard]] static Reading readMended(std::string_view bytes);
  /// Raises the budget: this was read.
  [[nodiscard]] static Reading asRead(std::unique_ptr<Document> document, bool isGuessed);

  std::unique_ptr<Tree> tree_;
};

/// What reading a document gave.
struct Reading {
  std::unique_ptr<Document> document;
  bool isGuessed = false;  ///< whether something in it was guessed or repaired
  std::string problem;     ///< why there is no document: "line 3: Start-end tags mismatch"; empty when there is one
};

}  // namespace xml
