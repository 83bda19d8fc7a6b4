#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/XML/XMLTree.h"

namespace conform {

/// A resource or group that the export reached.
struct PlanResource {
  xml::Node node;
  std::optional<std::size_t> parent;  ///< index of the group that it was reached from; none for the top resource
};

/// An assignment that the export wrote.
struct PlanAssignment {
  std::size_t task = 0;  ///< index into Plan::tasks()
  xml::Node node;        ///< the source `assignment`; empty for a task that nobody is assigned to
  xml::Node resource;    ///< the assigned `resource`; empty when there is none
};

/// The bundle's plan in the order in which it is exported: the n-th task here is the n-th `Task` of the file. The same
/// is true of calendars (one for each resource, groups included), resources and assignments. Refers to the documents,
/// which must outlive it.
class Plan {
 public:
  /// @param plan the exported scenario. @param tableOfContents the bundle's "__TOC.xml".
  Plan(const xml::Document& plan, const xml::Document& tableOfContents);

  [[nodiscard]] xml::Node scenario() const { return scenario_; }
  /// The root of the table of contents.
  [[nodiscard]] xml::Node tableOfContents() const { return tableOfContents_; }
  [[nodiscard]] const std::vector<PlanResource>& resources() const { return resources_; }
  [[nodiscard]] const std::vector<xml::Node>& tasks() const { return tasks_; }
  [[nodiscard]] const std::vector<PlanAssignment>& assignments() const { return assignments_; }
  /// The `resource` or `task` that the reference's `idref` names, the last one when several have the id; an empty view
  /// when there is none.
  [[nodiscard]] xml::Node referred(std::string_view kind, xml::Node reference) const;
  /// Whether the resource is written as a `Resource` of its own: people, equipment and materials, but no groups.
  [[nodiscard]] static bool isWritten(const PlanResource& resource);

 private:
  void walkResources();
  void walkTasks();
  void addAssignments(xml::Node task);

  xml::Node scenario_;
  xml::Node tableOfContents_;
  std::vector<PlanResource> resources_;
  std::vector<xml::Node> tasks_;
  std::vector<PlanAssignment> assignments_;
};

}  // namespace conform
