#include "Platform/XML/XMLQuery.h"

#include <utility>

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

void Document::Tree::ChildTable::fill(pugi::xml_node parent) {
  parent_ = parent.internal_object();
  children_.clear();
  groups_.clear();
  lasts_.fill(kNone);
  isGrouped_ = true;
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    const Name name(child.name());
    children_.push_back({name.text, child.internal_object()});
    if (!isGrouped_) continue;
    std::size_t group = groupOf(name);
    if (group == kNone) {
      group = groups_.size();
      isGrouped_ = group < kMaximumNames;
      if (!isGrouped_) continue;
      groups_.push_back({name.text, {}, std::exchange(lasts_[name.mark % kSlots], static_cast<std::uint8_t>(group))});
    }
    groups_[group].found.add(child.internal_object());
  }
}

Document::Tree::Found Document::Tree::ChildTable::find(const Name& name) const {
  if (isGrouped_) {
    const std::size_t group = groupOf(name);
    return group == kNone ? Found() : groups_[group].found;
  }
  Found found;
  for (const Child& child : children_) {
    if (child.name == name.text) found.add(child.node);
  }
  return found;
}

const Document::Tree::ChildTable& Document::Tree::childTableOf(pugi::xml_node parent) {
  const void* node = parent.internal_object();
  for (const ChildTable& table : childTables) {
    if (table.isOf(node)) return table;
  }
  if (parent == root) {
    if (!rootTable.isOf(node)) rootTable.fill(parent);
    return rootTable;
  }
  if (const auto large = largeTables.find(node); large != largeTables.end()) return large->second;
  ChildTable& table = childTables[nextChildTable % childTables.size()];
  table.fill(parent);
  if (table.isLarge()) return largeTables.emplace(node, std::exchange(table, {})).first->second;
  ++nextChildTable;
  return table;
}

Document::Tree::Lookup& Document::Tree::lookup(pugi::xml_node parent, const Name& name, std::string_view attribute) {
  const LookupKey<std::string_view> key{parent.internal_object(), name.text, attribute};
  if (const auto made = lookups.find(key); made != lookups.end()) return made->second;
  Lookup& lookup = lookups[{key.parent, std::string(key.name), std::string(key.attribute)}];
  childTableOf(parent).forEach(name, [&](auto* node) {
    if (const Attribute found = Node(node, nullptr).attribute(attribute)) lookup.add(found.value(), node);
  });
  return lookup;
}

}  // namespace xml
