#include "Platform/XML/XMLTree.h"

#include <cstring>
#include <new>
#include <utility>

#include "Platform/Text/Texts.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLRepair.h"
#include "Platform/XML/XMLText.h"
#include "Platform/XML/XMLTreeInternals.h"

namespace xml {
namespace {

/// A document's only text of an element is kept even when it is blank, and is stored in the element itself.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;

constexpr unsigned kWriteOptions = pugi::format_indent | pugi::format_no_declaration;

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

}  // namespace

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
  const std::function<void(std::string_view)> sink = [&text](std::string_view piece) { text += piece; };
  SinkWriter writer(sink);
  pugi::xml_node(node_).print(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return text;
}

// Document

Document::Document() : tree_(std::make_unique<Tree>()) {
  // By itself pugixml leaves out what it has no memory for.
  pugi::set_memory_management_functions(&::operator new, &::operator delete);
}

Document::~Document() = default;

bool Document::load(std::string bytes) {
  if (!parserReads(bytes)) return false;
  tree_->bytes = std::move(bytes);
  const auto result = tree_->document.load_buffer_inplace(tree_->bytes.data(), tree_->bytes.size(), kParseOptions);
  if (!result) return false;
  tree_->root = tree_->document.document_element();
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

void Document::serialize(const std::function<void(std::string_view)>& sink) const {
  sink(kDeclaration);
  SinkWriter writer(sink);
  tree_->root.print(writer, kIndent.data(), kWriteOptions, pugi::encoding_utf8);
}

}  // namespace xml
