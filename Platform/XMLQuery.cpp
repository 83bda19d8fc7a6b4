#include "Platform/XMLQuery.h"

#include "Platform/XMLTreeInternals.h"

namespace xml {

namespace {

std::string_view attributeValue(pugi::xml_node node, std::string_view name, bool& found) {
  for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
    if (name == attribute.name()) {
      found = true;
      return attribute.value();
    }
  }
  found = false;
  return {};
}

}  // namespace

bool Query::holdsFor(Node node) const {
  const pugi::xml_node element(node.node_);
  if (element.type() != pugi::node_element || name_ != element.name()) return false;
  if (attribute_.empty()) return true;
  bool found = false;
  const std::string_view value = attributeValue(element, attribute_, found);
  if (!found || (hasValue_ && value != value_)) return false;
  if (parentAttribute_.empty()) return true;
  const std::string_view parentValue = attributeValue(element.parent(), parentAttribute_, found);
  return found && parentValue == parentValue_;
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
  // Most questions for lists are about what an object has none or one of.
  const auto found = context.document_->tree_->childByName(pugi::xml_node(context.node_), name_);
  for (pugi::xml_node child(found.first); child; child = child.next_sibling()) {
    const bool isLast = child.internal_object() == found.last;
    const Node candidate(child.internal_object(), context.document_);
    if (isLast || holdsFor(candidate)) matches.push_back(candidate);
    if (isLast) break;
  }
  return matches;
}

Match Query::last(Node context) const {
  Match match;
  if (!context) return match;
  if (isPlainName()) {
    const auto found = context.document_->tree_->childByName(pugi::xml_node(context.node_), name_);
    return {Node(found.last, found.last != nullptr ? context.document_ : nullptr), found.count};
  }
  if (!isLookup()) {
    forEach(context, [&match](Node node) {
      match.last = node;
      match.count = match.count == 0 ? 1 : 2;
    });
    return match;
  }
  auto& lookups = context.document_->tree_->lookups;
  const auto [entry, isNew] = lookups.try_emplace({context.node_, std::string(name_).append("@").append(attribute_)});
  if (isNew) {
    Query all = *this;
    all.hasValue_ = false;
    all.forEach(context, [this, &lookup = entry->second](Node node) {
      lookup.add(node.attribute(attribute_).value(), node.node_);
    });
  }
  const auto found = entry->second.find(value_);
  return {Node(found.last, found.last != nullptr ? context.document_ : nullptr), found.count};
}

}  // namespace xml
