#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>

#include "Platform/XML/XMLTree.h"

/// Watches a walk down a tree that the source spells by references, which nothing keeps from running in circles or from
/// going on for ever. Raises InvariantFailure instead.
class MSPETreeGuard {
 public:
  /// @param kind "Resource" or "Task", for the messages.
  /// @param scenario what holds the nodes.
  MSPETreeGuard(std::string_view kind, xml::Node scenario) : kind_(kind), scenario_(scenario) {}

  /// Called for each node that the walk reaches. A node may be reached again, but what is read again may not be more
  /// than four times the scenario: groups that share their members would double the work with each level.
  /// @throws InvariantFailure also when the node is one of those it lies below, or too many of those.
  void reach(xml::Node node);

  /// The walk goes down to the members of the node that it has just reached.
  void enter(xml::Node node) { path_.insert(node.identity()); }
  /// It has come back from them.
  void leave(xml::Node node) { path_.erase(node.identity()); }

 private:
  std::string_view kind_;
  xml::Node scenario_;
  std::size_t again_ = 0;      ///< bytes that were read again
  std::size_t mostAgain_ = 0;  ///< bytes that may be; known when the first node is reached again
  std::unordered_set<const void*> reached_;
  std::unordered_set<const void*> path_;  ///< the nodes that the walk is below
};
