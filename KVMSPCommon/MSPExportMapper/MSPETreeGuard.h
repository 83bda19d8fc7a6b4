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
  /// @param objects how many of them the source has; far more visits than that are not a plan any more.
  MSPETreeGuard(std::string_view kind, std::size_t objects);

  /// One step down to a node; the step back up is the end of its life.
  class Step {
   public:
    Step(MSPETreeGuard& guard, xml::Node node);
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

   private:
    MSPETreeGuard& guard_;
    const void* identity_;
  };

 private:
  std::string_view kind_;
  std::size_t maximumVisits_;
  std::size_t visits_ = 0;
  std::unordered_set<const void*> path_;
};
