#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pugi {
struct xml_node_struct;
struct xml_attribute_struct;
}  // namespace pugi

namespace xml {

class Document;
class Element;
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

/// A borrowed view of a node of a document: small, copied by value, valid while the document lives and the node stays
/// in it. A view may be empty: reading an empty one gives neutral results, building on one does nothing.
class Node {
 public:
  Node() = default;
  explicit operator bool() const { return node_ != nullptr; }
  friend bool operator==(const Node& a, const Node& b) { return a.node_ == b.node_; }

  [[nodiscard]] bool isElement() const;
  /// The name as written, its prefix included; namespaces are not looked at.
  [[nodiscard]] std::string_view name() const;
  /// The texts of the node and its descendants, one after the other.
  [[nodiscard]] std::string stringValue() const;
  /// The same; put together in the storage only when there are several texts.
  [[nodiscard]] std::string_view stringValue(std::string& storage) const;
  /// The attribute with exactly this name.
  [[nodiscard]] Attribute attribute(std::string_view name) const;
  /// Its value; none when there is no such attribute.
  [[nodiscard]] std::optional<std::string> attributeText(std::string_view name) const;
  [[nodiscard]] Node parent() const;
  /// The node written as XML, on one line as far as its texts allow.
  [[nodiscard]] std::string markup() const;
  /// An address that tells this node from every other.
  [[nodiscard]] const void* identity() const { return node_; }

  // Building. The view stays what it is, so that these are const.

  /// Appends an element; gives a view of it, an empty one when this is no element.
  Node appendChild(const char* name) const;
  /// Inserts an element among the children; an index beyond the last appends.
  Node insertChild(const char* name, std::size_t index) const;
  /// Moves an element that was made apart to the end of this node's children, with all it holds; without a copy, unless
  /// a passing element comes to lie in one that stays. Gives it where it is now.
  Node append(Element element) const;
  /// The same in front of the child at the index.
  Node insert(Element element, std::size_t index) const;
  /// Appends an element that is finished, with all it holds: from now on it is only its text, which stands behind this
  /// node's other children. Nothing of it can be read or changed any more; memory is what that saves, several times the
  /// text's size.
  void appendFinished(Element element) const;
  /// Appends text. What cannot be a character in XML is left out.
  void appendText(std::string_view text) const;
  void insertComment(std::string_view text, std::size_t index) const;
  void appendComment(std::string_view text) const;
  /// Gives the attribute the value; makes it, behind the others, when there is none of the name. None leaves an
  /// existing value alone; a new attribute is then empty.
  Attribute setAttribute(const char* name, std::optional<std::string_view> value) const;
  /// A new element that is a deep copy of this one, not yet part of the tree.
  [[nodiscard]] Element copy() const;

 private:
  friend class Document;
  friend class Element;
  friend class Query;
  Node(pugi::xml_node_struct* node, Document* document) : node_(node), document_(document) {}

  pugi::xml_node_struct* node_ = nullptr;
  Document* document_ = nullptr;
};

struct Match {
  Node last;
  int count = 0;
};

/// An element that is being made, owned by whoever holds this value and dropped with it unless it is appended. It lives
/// inside its document, kept apart from the document's tree.
class Element {
 public:
  Element(Element&& other) noexcept : node_(std::exchange(other.node_, Node())) {}
  Element& operator=(Element&& other) noexcept;
  ~Element();

  /// The element to read and to build on; valid also after it was appended.
  [[nodiscard]] Node node() const { return node_; }
  operator Node() const { return node_; }

 private:
  friend class Node;
  friend class Document;
  explicit Element(Node node);
  Node release();
  void drop() noexcept;

  Node node_;
};

/// An XML document: owns every node in it. Not movable, because views point to it.
class Document {
 public:
  /// An empty document.
  Document();
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  /// The document that the bytes hold; nothing when they are malformed, hold no element, declare an encoding that the
  /// tree's parser does not know, or are not in the one they declare.
  [[nodiscard]] static std::unique_ptr<Document> parse(std::string bytes);
  /// The document that a recovering parser, which knows more encodings, makes of the bytes; nothing when it finds none.
  [[nodiscard]] static std::unique_ptr<Document> parseRepaired(std::string_view bytes);

  /// The root element; an empty view when the document has none.
  [[nodiscard]] Node root() const;
  /// A new element of this document, not yet part of its tree.
  [[nodiscard]] Element newElement(const char* name);
  /// The same for an element that will soon be dropped or finished (see appendFinished). As soon as no such element is
  /// left, the memory of all of them is used anew, which is cheaper than to take each apart.
  [[nodiscard]] Element newPassingElement(const char* name);
  /// Makes the element the document's root.
  Node setRoot(Element element);

  /// The document as well-formed UTF-8 XML, piece by piece: declaration, then the tree indented by two blanks.
  void serialize(const std::function<void(std::string_view)>& sink) const;

 private:
  friend class Node;
  friend class Element;
  friend class Query;
  struct Tree;

  [[nodiscard]] bool load(std::string bytes);
  /// Puts the element below the target, behind its children or in front of one of them.
  Node place(Element element, Node target, Node before);

  std::unique_ptr<Tree> tree_;
};

}  // namespace xml
