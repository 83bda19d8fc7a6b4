#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>

#include "Platform/XML/XMLTree.h"

/// Watches a walk down a tree whose nodes are linked by references. A broken or hostile plan may have references that
/// run in circles or share members so often that the walk would not end; this raises InvariantFailure instead.
class MSPETreeGuard {
 public:
  /// @param kind "Resource" or "Task", for the messages.
  /// @param scenario the element that contains the nodes.
  MSPETreeGuard(std::string_view kind, xml::Node scenario) : kind_(kind), scenario_(scenario) {}

  /// Must be called for each node that the walk reaches. A node may be reached again, but the nodes reached again may
  /// not add up to more than four times the scenario's size: when groups share their members, the work can double with
  /// each level.
  /// @throws InvariantFailure also when the node is one of its own ancestors, or is nested too deep.
  void reach(xml::Node node);

  /// The walk goes down to the members of the node that it just reached.
  void enter(xml::Node node) { path_.insert(node.identity()); }
  /// The walk has come back from them.
  void leave(xml::Node node) { path_.erase(node.identity()); }

 private:
  std::string_view kind_;
  xml::Node scenario_;
  std::size_t again_ = 0;      ///< size of the nodes reached again, in bytes
  std::size_t mostAgain_ = 0;  ///< the limit for that; computed when the first node is reached again
  std::unordered_set<const void*> reached_;
  std::unordered_set<const void*> path_;  ///< the ancestors of the next node
};
