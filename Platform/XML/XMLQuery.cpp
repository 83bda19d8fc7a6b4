#include "Platform/XML/XMLQuery.h"

#include "Platform/XML/XMLTreeInternals.h"

namespace xml {

bool Query::holdsFor(Node node) const {
  if (!node.isElement() || name_.text != node.name()) return false;
  if (attribute_.empty()) return true;
  const Attribute attribute = node.attribute(attribute_);
  if (!attribute || (hasValue_ && attribute.value() != value_)) return false;
  if (parentAttribute_.empty()) return true;
  const Attribute parentAttribute = node.parent().attribute(parentAttribute_);
  return parentAttribute && parentAttribute.value() == parentValue_;
}

bool Query::endsPath(Node node) const {
  pugi::xml_node ancestor = pugi::xml_node(node.node_).parent();
  std::string_view steps = parentPath_;
  while (!steps.empty()) {
    const std::size_t slash = steps.rfind('/');
    const std::string_view step = slash == std::string_view::npos ? steps : steps.substr(slash + 1);
    if (ancestor.type() != pugi::node_element || step != ancestor.name()) return false;
    ancestor = ancestor.parent();
    steps = steps.substr(0, slash == std::string_view::npos ? 0 : slash);
  }
  return true;
}

template <typename Visit>
void Query::forEach(Node context, Visit visit) const {
  if (!context) return;
  if (anywhere_) {
    const pugi::xml_node top = context.document_->tree_->root;
    for (pugi::xml_node node = top; node; node = nextInDocumentOrder(node, top)) {
      const Node candidate(node.internal_object(), context.document_);
      if (holdsFor(candidate) && endsPath(candidate)) visit(candidate);
    }
    return;
  }
  if (!parentPath_.empty()) {
    std::string_view rest = parentPath_;
    const std::string first(takeUntil(rest, "/"));
    Query below = *this;
    below.parentPath_ = rest;
    for (const pugi::xml_node child : pugi::xml_node(context.node_).children(first.c_str())) {
      below.forEach(Node(child.internal_object(), context.document_), visit);
    }
    return;
  }
  for (const pugi::xml_node child : pugi::xml_node(context.node_).children()) {
    const Node candidate(child.internal_object(), context.document_);
    if (holdsFor(candidate)) visit(candidate);
  }
}

std::vector<Node> Query::all(Node context) const {
  std::vector<Node> matches;
  if (!context) return matches;
  if (!isPlainName()) {
    forEach(context, [&matches](Node node) { matches.push_back(node); });
    return matches;
  }
  context.document_->tree_->childTableOf(pugi::xml_node(context.node_)).forEach(name_, [&](auto* node) {
    matches.push_back(Node(node, context.document_));
  });
  return matches;
}

Match Query::last(Node context) const {
  if (!context) return {};
  Document::Tree& tree = *context.document_->tree_;
  const pugi::xml_node parent(context.node_);
  Document::Tree::Found found;
  if (isPlainName()) {
    found = tree.childTableOf(parent).find(name_);
  } else if (isLookup()) {
    found = tree.lookup(parent, name_, attribute_).find(value_);
  } else {
    forEach(context, [&found](Node node) { found.add(node.node_); });
  }
  return {Node(found.last, found.last != nullptr ? context.document_ : nullptr), found.count};
}

}  // namespace xml
