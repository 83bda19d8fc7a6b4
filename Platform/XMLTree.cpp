#include "Platform/XMLTree.h"

#include <new>
#include <utility>

#include "Platform/Texts.h"
#include "Platform/XMLQuery.h"
#include "Platform/XMLRepair.h"
#include "Platform/XMLText.h"
#include "Platform/XMLTreeInternals.h"

namespace xml {
namespace {

/// A document's only text of an element is kept even when it is blank, and is stored in the element itself.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;

constexpr const char* kIndent = "  ";
constexpr unsigned kWriteOptions = pugi::format_indent | pugi::format_no_declaration;

/// Gives the node the text. What cannot be a character in XML is left out.
void setText(pugi::xml_node node, std::string_view text) {
  std::string storage;
  const std::string_view clean = charactersOnly(text, storage);
  node.set_value(clean.data(), clean.size());
}

/// Passes pieces on, with carriage returns as references: a reader would make line feeds of bare ones.
class SinkWriter final : public pugi::xml_writer {
 public:
  explicit SinkWriter(const std::function<void(std::string_view)>& sink) : sink_(sink) {}

  void write(const void* data, std::size_t size) override {
    std::string_view rest(static_cast<const char*>(data), size);
    for (std::size_t at = rest.find('\r'); at != std::string_view::npos; at = rest.find('\r')) {
      sink_(rest.substr(0, at));
      sink_("&#13;");
      rest.remove_prefix(at + 1);
    }
    sink_(rest);
  }

 private:
  const std::function<void(std::string_view)>& sink_;
};

/// name="value", with the value escaped.
std::string markupOf(pugi::xml_attribute attribute) {
  pugi::xml_document scratch;
  pugi::xml_node holder = scratch.append_child("a");
  holder.append_copy(attribute);
  std::string text;
  const std::function<void(std::string_view)> sink = [&text](std::string_view piece) { text += piece; };
  SinkWriter writer(sink);
  holder.print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  // <a name="value"/>, with or without a blank before the slash
  text = text.substr(3, text.rfind('"') - 2);
  return text;
}

pugi::xml_node childAt(pugi::xml_node parent, std::size_t index) {
  pugi::xml_node child = parent.first_child();
  while (child && index-- > 0) child = child.next_sibling();
  return child;
}

}  // namespace

void Document::Tree::write(pugi::xml_node node, unsigned depth, pugi::xml_writer& writer,
                           const std::function<void(std::string_view)>& sink) const {
  const auto texts = finished.find(node.internal_object());
  if (texts == finished.end() && node != root) {
    node.print(writer, kIndent, kWriteOptions, pugi::encoding_utf8, depth);
    return;
  }
  const std::string indent(depth * std::char_traits<char>::length(kIndent), ' ');
  std::string tag = indent + "<" + node.name();
  for (const pugi::xml_attribute attribute : node.attributes()) {
    tag += " " + markupOf(attribute);
  }
  sink(tag + ">\n");
  for (const pugi::xml_node child : node.children()) write(child, depth + 1, writer, sink);
  if (texts != finished.end()) {
    for (const std::string& piece : texts->second.pieces()) sink(piece);
  }
  sink(indent + "</" + node.name() + ">\n");
}

// Attribute

std::string_view Attribute::name() const { return pugi::xml_attribute(attribute_).name(); }

std::string_view Attribute::value() const { return pugi::xml_attribute(attribute_).value(); }

std::string Attribute::markup() const { return markupOf(pugi::xml_attribute(attribute_)); }

// Node

bool Node::isElement() const { return pugi::xml_node(node_).type() == pugi::node_element; }

std::string_view Node::name() const { return pugi::xml_node(node_).name(); }

std::string Node::stringValue() const {
  std::string storage;
  return std::string(stringValue(storage));
}

std::string_view Node::stringValue(std::string& storage) const {
  const pugi::xml_node top(node_);
  if (!top.first_child()) return top.value();  // an element's first text is stored in the element
  storage = top.value();
  for (pugi::xml_node node = top.first_child(); node; node = nextInDocumentOrder(node, top)) {
    if (node.type() == pugi::node_element || node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata) {
      storage += node.value();
    }
  }
  return storage;
}

Attribute Node::attribute(std::string_view name) const {
  for (pugi::xml_attribute attribute = pugi::xml_node(node_).first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    if (name == attribute.name()) return Attribute(attribute.internal_object());
  }
  return {};
}

std::optional<std::string> Node::attributeText(std::string_view name) const {
  const Attribute found = attribute(name);
  if (!found) return std::nullopt;
  return std::string(found.value());
}

Node Node::parent() const {
  const pugi::xml_node parent = pugi::xml_node(node_).parent();
  return parent.type() == pugi::node_element ? Node(parent.internal_object(), document_) : Node();
}

std::string Node::markup() const {
  std::string text;
  const std::function<void(std::string_view)> sink = [&text](std::string_view piece) { text += piece; };
  SinkWriter writer(sink);
  pugi::xml_node(node_).print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return text;
}

Node Node::appendChild(const char* name) const {
  if (node_ == nullptr) return {};
  document_->tree_->changed();
  pugi::xml_node child = pugi::xml_node(node_).append_child(pugi::node_element);
  if (!child) return {};
  child.set_name(name);
  return {child.internal_object(), document_};
}

Node Node::insertChild(const char* name, std::size_t index) const {
  const pugi::xml_node before = childAt(pugi::xml_node(node_), index);
  if (!before) return appendChild(name);
  document_->tree_->changed();
  pugi::xml_node child = pugi::xml_node(node_).insert_child_before(pugi::node_element, before);
  child.set_name(name);
  return {child.internal_object(), document_};
}

Node Node::append(Element element) const {
  if (node_ == nullptr) return {};
  return document_->place(std::move(element), *this, {});
}

Node Node::insert(Element element, std::size_t index) const {
  if (node_ == nullptr) return {};
  const pugi::xml_node before = childAt(pugi::xml_node(node_), index);
  return document_->place(std::move(element), *this, Node(before.internal_object(), document_));
}

void Node::appendFinished(Element element) const {
  if (node_ == nullptr) return;
  if (document_->tree_->isPassing(pugi::xml_node(node_))) {
    append(std::move(element));  // not worth it
    return;
  }
  GrowingText& texts = document_->tree_->finished[node_];
  const std::function<void(std::string_view)> sink = [&texts](std::string_view piece) { texts.append(piece); };
  SinkWriter writer(sink);
  const unsigned depth = document_->tree_->depthOf(pugi::xml_node(node_)) + 1;
  pugi::xml_node(element.node().node_).print(writer, kIndent, kWriteOptions, pugi::encoding_utf8, depth);
}

void Node::appendText(std::string_view text) const {
  if (node_ == nullptr) return;
  setText(pugi::xml_node(node_).append_child(pugi::node_pcdata), text);
}

void Node::appendComment(std::string_view text) const {
  setText(pugi::xml_node(node_).append_child(pugi::node_comment), text);
}

void Node::insertComment(std::string_view text, std::size_t index) const {
  const pugi::xml_node before = childAt(pugi::xml_node(node_), index);
  if (!before) return appendComment(text);
  setText(pugi::xml_node(node_).insert_child_before(pugi::node_comment, before), text);
}

Attribute Node::setAttribute(const char* name, std::optional<std::string_view> value) const {
  if (node_ == nullptr) return {};
  document_->tree_->changed();
  pugi::xml_attribute attribute = pugi::xml_node(node_).attribute(name);
  if (!attribute) attribute = pugi::xml_node(node_).append_attribute(name);
  if (value) {
    std::string storage;
    const std::string_view clean = charactersOnly(*value, storage);
    attribute.set_value(clean.data(), clean.size());
  }
  return Attribute(attribute.internal_object());
}

Element Node::copy() const {
  const pugi::xml_node original(node_);
  Document::Tree& tree = *document_->tree_;
  const bool passes = tree.isPassing(original);
  const pugi::xml_node copied = passes ? tree.passing.append_copy(original) : tree.apart.append_copy(original);
  return Element(Node(copied.internal_object(), document_));
}

// Element

Element& Element::operator=(Element&& other) noexcept {
  if (this != &other) {
    drop();
    node_ = std::exchange(other.node_, Node());
  }
  return *this;
}

Element::~Element() { drop(); }

Element::Element(Node node) : node_(node) {
  if (!node) return;
  Document::Tree& tree = *node.document_->tree_;
  if (tree.isPassing(pugi::xml_node(node.node_))) ++tree.passingOwners;
}

Node Element::release() {
  const Node node = std::exchange(node_, Node());
  if (!node) return node;
  Document::Tree& tree = *node.document_->tree_;
  if (tree.isPassing(pugi::xml_node(node.node_))) --tree.passingOwners;
  return node;
}

void Element::drop() noexcept {
  if (!node_) return;
  Document::Tree& tree = *node_.document_->tree_;
  const pugi::xml_node node(node_.node_);
  tree.changed();
  if (!tree.isPassing(node)) {
    tree.apart.remove_child(node);
  } else if (--tree.passingOwners == 0) {
    tree.passing.reset();
  } else {
    tree.passing.remove_child(node);
  }
  node_ = {};
}

// Document

Document::Document() : tree_(std::make_unique<Tree>()) {
  // By itself pugixml leaves out what it has no memory for.
  pugi::set_memory_management_functions(&::operator new, &::operator delete);
  tree_->apart = tree_->document.append_child("apart");
}

Document::~Document() = default;

bool Document::load(std::string bytes) {
  if (!parserReads(bytes)) return false;
  tree_->bytes = std::move(bytes);
  const auto result = tree_->document.load_buffer_inplace(tree_->bytes.data(), tree_->bytes.size(), kParseOptions);
  if (!result) return false;
  tree_->root = tree_->document.document_element();
  tree_->apart = tree_->document.append_child("apart");
  return true;
}

std::unique_ptr<Document> Document::parse(std::string bytes) {
  auto document = std::make_unique<Document>();
  if (!document->load(std::move(bytes))) return nullptr;
  return document;
}

std::unique_ptr<Document> Document::parseRepaired(std::string_view bytes) {
  std::string text;
  if (isTakenForUTF8(bytes)) {
    text = platform::asUTF8(bytes);
    bytes = text;
  }
  auto mended = repaired(bytes);
  if (!mended) return nullptr;
  return parse(std::move(*mended));
}

Node Document::root() const {
  if (!tree_->root) return {};
  return {tree_->root.internal_object(), const_cast<Document*>(this)};
}

Element Document::newElement(const char* name) {
  return Element(Node(tree_->apart.internal_object(), this).appendChild(name));
}

Element Document::newPassingElement(const char* name) {
  return Element(Node(tree_->passing.internal_object(), this).appendChild(name));
}

Node Document::setRoot(Element element) {
  const Node root = place(std::move(element), Node(tree_->document.internal_object(), this), {});
  tree_->root = pugi::xml_node(root.node_);
  return root;
}

Node Document::place(Element element, Node target, Node before) {
  tree_->changed();
  const bool mustCopy =
      tree_->isPassing(pugi::xml_node(element.node_.node_)) && !tree_->isPassing(pugi::xml_node(target.node_));
  const Node kept = mustCopy ? element.node_ : element.release();
  pugi::xml_node parent(target.node_);
  const pugi::xml_node child(kept.node_);
  const pugi::xml_node next(before.node_);
  pugi::xml_node placed;
  if (mustCopy) {
    placed = next ? parent.insert_copy_before(child, next) : parent.append_copy(child);
  } else {
    placed = next ? parent.insert_move_before(child, next) : parent.append_move(child);
  }
  return {placed.internal_object(), this};
}

void Document::serialize(const std::function<void(std::string_view)>& sink) const {
  sink("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
  SinkWriter writer(sink);
  if (tree_->finished.empty()) {
    tree_->root.print(writer, kIndent, kWriteOptions, pugi::encoding_utf8);
  } else {
    tree_->write(tree_->root, 0, writer, sink);
  }
}

}  // namespace xml
