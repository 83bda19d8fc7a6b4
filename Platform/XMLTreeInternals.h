#pragma once

// What a document holds; for the files of the tree and its queries alone.

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Platform/XMLTree.h"

namespace xml {

/// The next node in document order below the top; an empty one at the end.
inline pugi::xml_node nextInDocumentOrder(pugi::xml_node node, pugi::xml_node top) {
  if (node.first_child()) return node.first_child();
  while (node != top && !node.next_sibling()) node = node.parent();
  return node == top ? pugi::xml_node() : node.next_sibling();
}

struct Document::Tree {
  struct Found {
    pugi::xml_node_struct* first = nullptr;
    pugi::xml_node_struct* last = nullptr;
    int count = 0;  ///< 2 stands for several

    void add(pugi::xml_node_struct* node) {
      if (count == 0) first = node;
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
    std::unordered_map<std::string_view, std::size_t> positions_;
    std::size_t next_ = 0;
  };

  struct LookupKey {
    const void* parent;
    std::string name;
    bool operator==(const LookupKey&) const = default;
  };
  struct LookupKeyHash {
    std::size_t operator()(const LookupKey& key) const {
      return std::hash<const void*>()(key.parent) ^ std::hash<std::string>()(key.name);
    }
  };

  /// The children of one node by name. Mappers ask one element for its children one after the other.
  struct ChildTable {
    struct Entry {
      const char* name;
      Found found;

      [[nodiscard]] bool is(const char* other) const { return *name == *other && std::strcmp(name, other) == 0; }
      [[nodiscard]] bool is(std::string_view other) const {
        return *name == other.front() && std::strncmp(name, other.data(), other.size()) == 0 &&
               name[other.size()] == '\0';
      }
    };
    const void* parent = nullptr;
    std::vector<Entry> entries;
    bool isComplete = true;  ///< false when there are more names than a table is good for

    template <typename Name>
    [[nodiscard]] Entry* entryOf(Name name) {
      for (Entry& entry : entries) {
        if (entry.is(name)) return &entry;
      }
      return nullptr;
    }
  };
  static constexpr std::size_t kMaximumNames = 100;

  std::string bytes;  ///< what the parsed nodes' texts point into
  pugi::xml_document document;
  pugi::xml_node root;
  /// Children of one node by one attribute's value, made at the first question.
  std::unordered_map<LookupKey, Lookup, LookupKeyHash> lookups;

  /// The tables of the elements asked last: an element and those it leads to.
  std::array<ChildTable, 4> childTables;
  std::size_t nextChildTable = 0;

  [[nodiscard]] ChildTable& childTableOf(pugi::xml_node parent) {
    for (ChildTable& table : childTables) {
      if (table.parent == parent.internal_object()) return table;
    }
    ChildTable& table = childTables[nextChildTable++ % childTables.size()];
    table.parent = parent.internal_object();
    table.entries.clear();
    table.isComplete = true;
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
      if (child.type() != pugi::node_element) continue;
      ChildTable::Entry* entry = table.entryOf(child.name());
      if (entry == nullptr) {
        table.isComplete = table.entries.size() < kMaximumNames;
        if (!table.isComplete) break;
        entry = &table.entries.emplace_back(ChildTable::Entry{child.name(), Found()});
      }
      entry->found.add(child.internal_object());
    }
    return table;
  }

  [[nodiscard]] Found childByName(pugi::xml_node parent, std::string_view name) {
    ChildTable& table = childTableOf(parent);
    if (name.empty()) return {};
    if (table.isComplete) {
      const ChildTable::Entry* entry = table.entryOf(name);
      return entry != nullptr ? entry->found : Found();
    }
    Found found;
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling()) {
      if (child.type() != pugi::node_element || name != child.name()) continue;
      found.add(child.internal_object());
    }
    return found;
  }
};

}  // namespace xml
