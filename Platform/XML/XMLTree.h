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
  /// The texts of the node and its descendants, joined; blanks between the elements are included.
  [[nodiscard]] std::string stringValue() const;
  /// The same as a view, valid while the document lives.
  [[nodiscard]] std::string_view stringView() const;
  /// The attribute with exactly this name.
  [[nodiscard]] Attribute attribute(std::string_view name) const;
  /// The attribute's value; none when there is no such attribute.
  [[nodiscard]] std::optional<std::string> attributeText(std::string_view name) const;
  [[nodiscard]] Node parent() const;
  /// The node written as XML without line breaks, except those in its texts.
  [[nodiscard]] std::string markup() const;
  /// About how many bytes the node has as XML, as an estimate of the cost of mapping it. Takes time proportional to
  /// them.
  [[nodiscard]] std::size_t size() const;
  /// An address that identifies the node.
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

/// An XML document that was read. It owns its nodes, and is not movable because views point to it.
class Document {
 public:
  /// An empty document; read() and parse() make the others.
  Document();
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// Returns the bytes of a document again; an empty text when they are no longer available.
  using Source = std::function<std::string()>;

  /// Reads a document. When it is not well-formed UTF-8, its encoding is guessed and its markup repaired as far as
  /// possible. Entities that it declares itself are expanded, at most to ten times its size; nothing is fetched.
  /// @param again called when the original bytes are needed a second time, perhaps long after reading: parsing
  /// overwrites `bytes`.
  [[nodiscard]] static Reading read(std::string bytes, Source again);
  /// The same, keeping a copy of the bytes in memory.
  [[nodiscard]] static Reading read(std::string bytes);
  /// The document that the bytes hold; none when anything in them has to be guessed or repaired.
  [[nodiscard]] static std::unique_ptr<Document> parse(std::string bytes);

  /// What an excerpt keeps of the root's children of one name: one attribute, and some of their children.
  struct Kept {
    std::string_view name;
    std::string_view attribute;
    std::vector<std::string_view> children;
  };
  /// A smaller document, in which queries for what is kept give the same answers. Children of the root that lack the
  /// attribute are left out. The children that are kept keep all their attributes.
  /// @return none when a kept child has child nodes: blanks between them could get lost.
  [[nodiscard]] std::unique_ptr<Document> excerpt(const std::vector<Kept>& rows) const;

  /// The root element; an empty view when the document has none.
  [[nodiscard]] Node root() const;

  /// Passes the document to the sink as well-formed UTF-8 XML: the declaration, then the tree indented by two blanks a
  /// level.
  void serialize(const std::function<void(std::string_view)>& sink) const;

 private:
  friend class Node;
  friend class Query;
  struct Tree;

  [[nodiscard]] static Reading readMended(std::string_view bytes);
  [[nodiscard]] static Reading asRead(std::unique_ptr<Document> document, bool isGuessed);

  std::unique_ptr<Tree> tree_;
};

/// The result of reading a document.
struct Reading {
  std::unique_ptr<Document> document;
  bool isGuessed = false;  ///< something in it was guessed or repaired
  std::string problem;     ///< why there is no document: "line 3: Start-end tags mismatch"; empty when there is one
};

}  // namespace xml
