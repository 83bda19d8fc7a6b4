#pragma once

// What a document holds; for the files of the tree and its queries alone.

#include <array>
#include <cstdint>
#include <functional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/Base/IdHash.h"
#include "Platform/XML/XMLQuery.h"
#include "Platform/XML/XMLTree.h"

namespace xml {

/// The next node in document order below the top; an empty one at the end.
inline pugi::xml_node nextInDocumentOrder(pugi::xml_node node, pugi::xml_node top) {
  if (node.first_child()) return node.first_child();
  while (node != top && !node.next_sibling()) node = node.parent();
  return node == top ? pugi::xml_node() : node.next_sibling();
}

struct Document::Tree {
  /// How documents are parsed: with every blank kept, or without those between elements. Nearly all blanks of a plan
  /// are of the second kind, and nobody asks for them. As nodes they would be a third of the memory of an export and a
  /// twelfth of its instructions, so textWithBlanks() gets them from the source when they are needed: when an element
  /// with other nodes in it is asked for its text. Comments are nodes so that such an element can be told.
  static constexpr unsigned kKeepBlanks =
      pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_embed_pcdata | pugi::parse_comments | pugi::parse_pi;
  /// An element's only text is kept even when it is blank.
  static constexpr unsigned kLeaveOutBlanks = (kKeepBlanks & ~pugi::parse_ws_pcdata) | pugi::parse_ws_pcdata_single;

  /// The last of the nodes that a query asks for, and how many there are: 2 stands for several.
  struct Found {
    pugi::xml_node_struct* last = nullptr;
    int count = 0;

    void add(pugi::xml_node_struct* node) {
      last = node;
      count = count == 0 ? 1 : 2;
    }
  };

  /// Children of one node by the value of one attribute. Nearly all questions come in document order, so the value
  /// behind the last one asked for is tried first: in a large plan each look into the table waits for memory.
  class Lookup {
   public:
    void add(std::string_view value, pugi::xml_node_struct* node) {
      const auto [position, isNew] = positions_.try_emplace(value, entries_.size());
      if (isNew) entries_.push_back({value, {}});
      entries_[position->second].found.add(node);
    }
    [[nodiscard]] Found find(std::string_view value) {
      if (next_ >= entries_.size() || entries_[next_].value != value) {
        const auto position = positions_.find(value);
        if (position == positions_.end()) return {};
        next_ = position->second;
      }
      return entries_[next_++].found;
    }

   private:
    struct Entry {
      std::string_view value;
      Found found;
    };
    std::vector<Entry> entries_;  ///< each value once, in document order
    std::unordered_map<std::string_view, std::size_t, platform::IdHash> positions_;
    std::size_t next_ = 0;
  };

  /// What a lookup is of: the children of a node that have the name, by the attribute.
  template <typename Text>
  struct LookupKey {
    const void* parent;
    Text name;
    Text attribute;
  };
  struct LookupKeyHash {
    using is_transparent = void;
    std::size_t operator()(const auto& key) const {
      return std::hash<const void*>()(key.parent) + key.name.size() * 31 + key.attribute.size();
    }
  };
  struct LookupKeyEqual {
    using is_transparent = void;
    bool operator()(const auto& a, const auto& b) const {
      return a.parent == b.parent && a.name == b.name && a.attribute == b.attribute;
    }
  };

  /// The elements below one node by their names. Mappers ask one element for its children one after the other, mostly
  /// for what is not there.
  class ChildTable {
   public:
    [[nodiscard]] bool isOf(const void* parent) const { return parent_ == parent; }
    /// Whether it takes long to make.
    [[nodiscard]] bool isLarge() const { return children_.size() > kFewChildren; }
    void fill(pugi::xml_node parent);

    [[nodiscard]] Found find(const Name& name) const {
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
    /// Calls visit(node) for the children with the name, in document order.
    template <typename Visit>
    void forEach(const Name& name, Visit visit) const {
      if (find(name).count == 0) return;
      for (const Child& child : children_) {
        if (child.name == name.text) visit(child.node);
      }
    }

   private:
    static constexpr std::size_t kSlots = 64;
    static constexpr std::uint8_t kNone = 255;
    static constexpr std::size_t kMaximumNames = 100;
    static constexpr std::size_t kFewChildren = 256;

    struct Child {
      std::string_view name;
      pugi::xml_node_struct* node;
    };
    struct Group {
      std::string_view name;
      Found found;
      std::uint8_t previous;  ///< the group before with a mark of the same slot
    };
    [[nodiscard]] std::size_t groupOf(const Name& name) const {
      std::size_t group = lasts_[name.mark % kSlots];
      while (group != kNone && groups_[group].name != name.text) group = groups_[group].previous;
      return group;
    }

    const void* parent_ = nullptr;
    std::vector<Child> children_;               ///< in document order
    std::vector<Group> groups_;                 ///< one for each name, unless there are too many to be worth it
    std::array<std::uint8_t, kSlots> lasts_{};  ///< the last group of each slot
    bool isGrouped_ = true;
  };

  std::string bytes;  ///< what the parsed nodes' texts point into
  pugi::xml_document document;
  pugi::xml_node root;

  /// Parses the bytes; why they cannot be when they cannot, otherwise empty.
  [[nodiscard]] pugi::xml_parse_result load(std::string text, unsigned options);

  Source again;        ///< of the bytes, when blanks between elements were left out; none when they were not
  std::string source;  ///< the bytes as they were, had from it at the first need
  std::unordered_map<const void*, std::string> wholeTexts;  ///< of elements that were asked, and have nodes in them

  /// The texts of a node that has others in it.
  [[nodiscard]] const std::string& wholeText(pugi::xml_node top);
  [[nodiscard]] std::string textWithBlanks(pugi::xml_node top);

  /// Children of one node by one attribute's value, made at the first question.
  std::unordered_map<LookupKey<std::string>, Lookup, LookupKeyHash, LookupKeyEqual> lookups;

  /// The tables of the root, of elements with many children, and of the elements asked last: an element and those it
  /// leads to. Made again for each question, large ones would take a time that grows with the square of their size.
  ChildTable rootTable;
  std::unordered_map<const void*, ChildTable> largeTables;
  std::array<ChildTable, 4> childTables;
  std::size_t nextChildTable = 0;

  [[nodiscard]] const ChildTable& childTableOf(pugi::xml_node parent);
  [[nodiscard]] Lookup& lookup(pugi::xml_node parent, const Name& name, std::string_view attribute);
};

}  // namespace xml
