#include "Platform/XML/XMLTree.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "Platform/Base/Budget.h"
#include "Platform/XML/SinkWriter.h"
#include "Platform/XML/XMLEncoding.h"
#include "Platform/XML/XMLProlog.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLReferences.h"
#include "Platform/XML/XMLRepair.h"
#include "Platform/XML/XMLText.h"
#include "Platform/XML/XMLTreeInternals.h"

namespace xml {
namespace {

constexpr unsigned kWriteOptions = pugi::format_indent | pugi::format_no_declaration;

/// name="value", with the value escaped.
std::string markupOf(pugi::xml_attribute attribute) {
  const std::string_view value = attribute.value();
  if (isPlainText(value) && value.find('"') == std::string_view::npos) {
    return std::string(attribute.name()).append("=\"").append(value).append("\"");
  }
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

MendedText mendedTextOf(std::string_view bytes) {
  const DocumentText decoded = documentText(bytes);
  MendedText mended = mendedText(decoded.text);
  if (decoded.isGuessed) mended.isGuessed = true;
  return mended;
}

std::string problemOf(const pugi::xml_parse_result& result, std::string_view text) {
  std::string reason = result.description();
  if (result.status == pugi::status_no_document_element) return reason;
  const std::string_view before = text.substr(0, static_cast<std::size_t>(result.offset));
  return fmt::format("line {}: {}", 1 + std::count(before.begin(), before.end(), '\n'), reason);
}

void print(pugi::xml_node node, std::string& to) {
  const std::function<void(std::string_view)> sink = [&to](std::string_view piece) { to += piece; };
  SinkWriter writer(sink);
  node.print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
}

/// The parser stops at a NUL behind the root without an error.
bool hasTextBehindNUL(std::string_view bytes) {
  constexpr std::string_view kNothing("\0 \t\r\n", 5);
  return bytes.find_first_not_of(kNothing, bytes.find('\0')) != std::string_view::npos;
}

/// Holes of a file take no space on the disk, and are read as NULs, so these do not raise the budget.
std::size_t countOfNULs(std::string_view bytes) {
  const std::size_t first = bytes.find('\0');  // takes no noticeable time, unlike counting
  if (first == std::string_view::npos) return 0;
  return static_cast<std::size_t>(std::count(bytes.begin() + static_cast<std::ptrdiff_t>(first), bytes.end(), '\0'));
}

bool hasElementBehind(pugi::xml_node node) {
  do {
    node = node.next_sibling();
  } while (node && node.type() != pugi::node_element);
  return node;
}

/// An element without elements in it. Nearly all are plain, and printing takes ten times as long.
void appendMarkup(std::string& to, pugi::xml_node node) {
  const std::string_view name = node.name();
  const std::string_view text = node.value();
  if (node.first_attribute() || !isPlainText(text)) {
    print(node, to);
  } else {
    to.append("<").append(name).append(">").append(text).append("</").append(name).append(">");
  }
}

}  // namespace

// Attribute

std::string_view Attribute::name() const { return pugi::xml_attribute(attribute_).name(); }

std::string_view Attribute::value() const { return pugi::xml_attribute(attribute_).value(); }

std::string Attribute::markup() const { return markupOf(pugi::xml_attribute(attribute_)); }

// Node

bool Node::isElement() const { return pugi::xml_node(node_).type() == pugi::node_element; }

std::string_view Node::name() const { return pugi::xml_node(node_).name(); }

std::string Node::stringValue() const { return std::string(stringView()); }

std::string_view Node::stringView() const {
  const pugi::xml_node top(node_);
  if (!top.first_child()) return top.value();  // an element's first text is stored in the element
  return document_->tree_->wholeText(top);
}

Attribute Node::attribute(std::string_view name) const {
  for (pugi::xml_attribute attribute = pugi::xml_node(node_).first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    const char* other = attribute.name();
    if (std::strncmp(other, name.data(), name.size()) == 0 && other[name.size()] == '\0') {
      return Attribute(attribute.internal_object());
    }
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
  print(pugi::xml_node(node_), text);
  return text;
}

std::size_t Node::size() const {
  constexpr std::size_t kMarks = 4;
  std::size_t bytes = 0;
  const pugi::xml_node top(node_);
  for (pugi::xml_node node = top; node; node = nextInDocumentOrder(node, top)) {
    bytes += kMarks + std::strlen(node.name()) + std::strlen(node.value());
    for (const pugi::xml_attribute attribute : node.attributes()) {
      bytes += kMarks + std::strlen(attribute.name()) + std::strlen(attribute.value());
    }
  }
  return bytes;
}

// Document

Document::Document() : tree_(std::make_unique<Tree>()) {
  // Without this, pugixml silently drops nodes when memory runs out; operator new throws.
  pugi::set_memory_management_functions(&::operator new, &::operator delete);
}

Document::~Document() = default;

Reading Document::read(std::string bytes, Source again) {
  if (bytes.empty()) return {nullptr, false, "it is empty"};
  platform::Budget::raise(bytes.size() - countOfNULs(bytes));
  if (hasTextBehindNUL(bytes) || !isPlainUTF8(bytes) || refersToNoCharacter(bytes) || prologOf(bytes).hasDocumentType)
    return readMended(bytes);
  auto document = std::make_unique<Document>();
  const std::size_t spent = platform::Budget::spent();
  if (document->tree_->load(std::move(bytes), Tree::kLeaveOutBlanks)) {
    document->tree_->again = std::move(again);
    return asRead(std::move(document), false);
  }
  document.reset();
  platform::Budget::takeBackTo(spent);
  Reading reading = readMended(again());
  reading.isGuessed = true;
  return reading;
}

Reading Document::asRead(std::unique_ptr<Document> document, bool isGuessed) {
  // The parser accepts several roots, of which only the first is read.
  const bool hasMore = hasElementBehind(document->tree_->root);
  return {std::move(document), isGuessed || hasMore, ""};
}

Reading Document::read(std::string bytes) {
  Source again = [bytes] { return bytes; };
  return read(std::move(bytes), std::move(again));
}

Reading Document::readMended(std::string_view bytes) {
  const MendedText mended = mendedTextOf(bytes);
  if (!mended.problem.empty()) return {nullptr, false, mended.problem};
  platform::Budget::spend(mended.text.size());
  const std::size_t spent = platform::Budget::spent();
  auto document = std::make_unique<Document>();
  const auto result = document->tree_->load(mended.text, Tree::kKeepBlanks);
  if (result) return asRead(std::move(document), mended.isGuessed);
  document = std::make_unique<Document>();
  platform::Budget::takeBackTo(spent);
  // Repair is the slowest step for each byte, so it does not take a document that its entities more than double.
  auto text = mended.added > bytes.size() ? std::nullopt : repaired(mended.text);
  if (text && document->tree_->load(std::move(*text), Tree::kKeepBlanks)) {
    return asRead(std::move(document), true);
  }
  return {nullptr, false, problemOf(result, mended.text)};
}

std::unique_ptr<Document> Document::parse(std::string bytes) {
  Reading reading = read(std::move(bytes));
  return reading.isGuessed ? nullptr : std::move(reading.document);
}

std::unique_ptr<Document> Document::excerpt(const std::vector<Kept>& rows) const {
  std::string text = "<r>";
  for (const pugi::xml_node node : tree_->root.children()) {
    const std::string_view name = node.name();
    const auto row = std::find_if(rows.begin(), rows.end(), [name](const Kept& kept) { return kept.name == name; });
    if (row == rows.end()) continue;
    const Attribute key = Node(node.internal_object(), nullptr).attribute(row->attribute);
    if (!key) continue;
    text.append("<").append(name).append(" ").append(key.markup()).append(">");
    for (const pugi::xml_node child : node.children()) {
      if (std::find(row->children.begin(), row->children.end(), child.name()) == row->children.end()) continue;
      if (child.first_child()) return nullptr;
      appendMarkup(text, child);
    }
    text.append("</").append(name).append(">");
  }
  text += "</r>";
  auto document = std::make_unique<Document>();
  return document->tree_->load(std::move(text), Tree::kKeepBlanks) ? std::move(document) : nullptr;
}

Node Document::root() const {
  if (!tree_->root) return {};
  return {tree_->root.internal_object(), const_cast<Document*>(this)};
}

void Document::serialize(const std::function<void(std::string_view)>& sink) const {
  sink(kDeclaration);
  SinkWriter writer(sink);
  tree_->root.print(writer, kIndent.data(), kWriteOptions, pugi::encoding_utf8);
}

}  // namespace xml
