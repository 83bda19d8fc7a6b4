#pragma once

// What a document consists of. Only for the files of the tree and its queries.

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
  /// How documents are parsed: with all blanks, or without those between elements. Nearly all blanks of a plan are
  /// between elements and never needed; as nodes they would take a third of the memory of an export and a twelfth of
  /// its instructions. Only the text of an element that contains other nodes needs them; textWithBlanks() then gets
  /// them from the source. Comments are kept as nodes so that such an element can be recognized.
  static constexpr unsigned kKeepBlanks =
      pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_embed_pcdata | pugi::parse_comments | pugi::parse_pi;
  /// An element's only text is kept even when it is blank.
  static constexpr unsigned kLeaveOutBlanks = (kKeepBlanks & ~pugi::parse_ws_pcdata) | pugi::parse_ws_pcdata_single;

  /// The last node that matches a query, and the number of matches, where 2 stands for several.
  struct Found {
    pugi::xml_node_struct* last = nullptr;
    int count = 0;

    void add(pugi::xml_node_struct* node) {
      last = node;
      count = count == 0 ? 1 : 2;
    }
  };

  /// An index of one node's children by the value of one attribute. Lookups mostly follow document order, so the next
  /// entry is tried first; hashing costs a cache miss on large plans.
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

  /// Identifies an index: the parent, the children's name and the attribute.
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

  /// One node's child elements, grouped by name. A mapper asks one element for many children in a row, most of which
  /// are missing, so each answer should not take a walk over all children.
  class ChildTable {
   public:
    [[nodiscard]] bool isOf(const void* parent) const { return parent_ == parent; }
    /// Whether the table took long to fill, so that it is worth keeping.
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
      std::uint8_t previous;  ///< the previous group in the same slot
    };
    [[nodiscard]] std::size_t groupOf(const Name& name) const {
      std::size_t group = lasts_[name.mark % kSlots];
      while (group != kNone && groups_[group].name != name.text) group = groups_[group].previous;
      return group;
    }

    const void* parent_ = nullptr;
    std::vector<Child> children_;  ///< in document order
    std::vector<Group> groups_;    ///< one for each name; incomplete when there are more than kMaximumNames
    std::array<std::uint8_t, kSlots> lasts_{};  ///< the last group of each slot
    bool isGrouped_ = true;
  };

  std::string bytes;  ///< the parsed nodes point into these
  pugi::xml_document document;
  pugi::xml_node root;

  /// Parses the text. The result converts to true when it is well-formed, and otherwise says what is wrong.
  [[nodiscard]] pugi::xml_parse_result load(std::string text, unsigned options);

  Source again;        ///< returns the original bytes; set only when blanks between elements were left out
  std::string source;  ///< the original bytes, fetched when first needed
  std::unordered_map<const void*, std::string> wholeTexts;  ///< answers of wholeText()

  /// The joined texts of a node that has child nodes.
  [[nodiscard]] const std::string& wholeText(pugi::xml_node top);
  [[nodiscard]] std::string textWithBlanks(pugi::xml_node top);

  /// The indexes, each made at the first query for it.
  std::unordered_map<LookupKey<std::string>, Lookup, LookupKeyHash, LookupKeyEqual> lookups;

  /// Tables are kept for the root, for elements with many children, and for the four elements asked last. Filling a
  /// large one for every query would take quadratic time.
  ChildTable rootTable;
  std::unordered_map<const void*, ChildTable> largeTables;
  std::array<ChildTable, 4> childTables;
  std::size_t nextChildTable = 0;

  [[nodiscard]] const ChildTable& childTableOf(pugi::xml_node parent);
  [[nodiscard]] Lookup& lookup(pugi::xml_node parent, const Name& name, std::string_view attribute);
};

}  // namespace xml
