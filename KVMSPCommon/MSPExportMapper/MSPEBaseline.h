#pragma once

#include <memory>
#include <string>

#include "Platform/XML/XMLTree.h"

/// A baseline: an earlier state of the plan in a scenario document of its own. Finds the task, resource or assignment
/// that had a given id then; when several have it, the last one. Uses the document's index of ids.
class MSPEBaseline {
 public:
  /// @param xmlDoc the scenario, or an excerpt() of it.
  explicit MSPEBaseline(std::shared_ptr<xml::Document> xmlDoc) : xmlDoc_(std::move(xmlDoc)) {}

  /// The part of a compared scenario that an export reads, without assignments. It saves memory: the excerpt is a tenth
  /// of the scenario or less, and a scenario is as large as the plan. Returns the scenario itself when no excerpt can
  /// be made.
  [[nodiscard]] static std::shared_ptr<xml::Document> excerpt(std::shared_ptr<xml::Document> scenario);

  /// The source element with the id below the scenario, or an empty node.
  [[nodiscard]] xml::Node getTaskById(const std::string& id) const;
  [[nodiscard]] xml::Node getResourceById(const std::string& id) const;
  /// The `assignment` of the resource whose parent is the task, anywhere in the document, or an empty node.
  [[nodiscard]] xml::Node getAssignmentByTaskId(const std::string& taskId, const std::string& resourceId) const;

 private:
  std::shared_ptr<xml::Document> xmlDoc_;
};
