#include "Platform/XML/XMLTreeInternals.h"

#include <new>
#include <utility>

#include "Platform/Base/Budget.h"

namespace xml {
namespace {

void* allocateCharged(std::size_t bytes) {
  platform::Budget::spend(bytes);
  return ::operator new(bytes);
}

/// Charges what the parser allocates while this object lives. The tree of a document can have 160 times its size.
class ChargedParser {
 public:
  ChargedParser() { pugi::set_memory_management_functions(&allocateCharged, &::operator delete); }
  ~ChargedParser() { pugi::set_memory_management_functions(&::operator new, &::operator delete); }
  ChargedParser(const ChargedParser&) = delete;
  ChargedParser& operator=(const ChargedParser&) = delete;
};

bool isText(pugi::xml_node node) {
  return node.type() == pugi::node_element || node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

/// The texts of all nodes below, joined. Elements count as well, since an element's first text is stored in the
/// element.
std::string joinedTexts(pugi::xml_node top) {
  std::string texts;
  for (pugi::xml_node node = top; node; node = nextInDocumentOrder(node, top)) {
    if (isText(node)) texts += node.value();
  }
  return texts;
}

/// The joined texts of the element that the markup begins with. End tags of its parents may follow, so parsing reports
/// an error; the element is complete all the same.
std::string textsOfMarkup(std::string_view markup, unsigned options) {
  pugi::xml_document part;
  {
    const ChargedParser charged;
    part.load_buffer(markup.data(), markup.size(), options, pugi::encoding_utf8);
  }
  return joinedTexts(part.first_child());
}

/// The first node behind the element's end.
pugi::xml_node nextBehind(pugi::xml_node element) {
  while (element && !element.next_sibling()) element = element.parent();
  return element.next_sibling();
}

}  // namespace

pugi::xml_parse_result Document::Tree::load(std::string text, unsigned options) {
  bytes = std::move(text);
  const ChargedParser charged;
  const auto result = document.load_buffer_inplace(bytes.data(), bytes.size(), options, pugi::encoding_utf8);
  root = document.document_element();
  return result;
}

const std::string& Document::Tree::wholeText(pugi::xml_node top) {
  const auto [position, isNew] = wholeTexts.try_emplace(top.internal_object());
  if (isNew) position->second = again ? textWithBlanks(top) : joinedTexts(top);
  return position->second;
}

std::string Document::Tree::textWithBlanks(pugi::xml_node top) {
  if (source.empty()) {
    source = again();
    platform::Budget::spend(source.size());
  }
  if (source.size() != bytes.size()) return joinedTexts(top);  // another program changed the file meanwhile
  const auto begin = static_cast<std::size_t>(top.offset_debug()) - 1;
  const pugi::xml_node next = nextBehind(top);
  const std::size_t end = next ? static_cast<std::size_t>(next.offset_debug()) : source.size();
  const std::size_t spent = platform::Budget::spent();
  std::string texts = textsOfMarkup(std::string_view(source).substr(begin, end - begin), kKeepBlanks);
  platform::Budget::takeBackTo(spent);
  return texts;
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
