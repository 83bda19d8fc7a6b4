#pragma once

#include <memory>
#include <string>

#include "Platform/XML/XMLTree.h"

/// A baseline: an earlier state of the plan, kept as a scenario document of its own. Gives the object that an object of
/// the plan was then; when several have the id, the last one. Tasks and resources are found through the document's
/// index of ids.
class MSPEBaseline {
 public:
  /// @param xmlDoc the scenario, or an excerpt() of it.
  explicit MSPEBaseline(std::shared_ptr<xml::Document> xmlDoc) : xmlDoc_(std::move(xmlDoc)) {}

  /// What exports read of a scenario that a plan is compared with: a tenth of it or less, for compared scenarios are as
  /// large as the plan. Assignments are not in it. Gives the scenario itself when it has to be whole.
  [[nodiscard]] static std::shared_ptr<xml::Document> excerpt(std::shared_ptr<xml::Document> scenario);

  /// The source element with the id below the scenario, or an empty node.
  [[nodiscard]] xml::Node getTaskById(const std::string& id) const;
  [[nodiscard]] xml::Node getResourceById(const std::string& id) const;
  /// The `assignment` of the resource whose parent is the task, anywhere in the document, or an empty node.
  [[nodiscard]] xml::Node getAssignmentByTaskId(const std::string& taskId, const std::string& resourceId) const;

 private:
  std::shared_ptr<xml::Document> xmlDoc_;
};
