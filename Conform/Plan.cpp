#include "Conform/Plan.h"

#include <string>
#include <string_view>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPExportMapper/MSPEResourceTypes.h"

namespace conform {
namespace {

std::string typeOf(xml::Node object) { return stringValueForXQuery(object, "type").value_or(""); }

/// Puts what the group refers to on the stack, so that the first is taken next.
template <typename Entry, typename Make>
void pushMembers(std::vector<Entry>& stack, const std::vector<xml::Node>& references, Make make) {
  for (auto reference = references.rbegin(); reference != references.rend(); ++reference) make(stack, *reference);
}

}  // namespace

Plan::Plan(const xml::Document& plan, const xml::Document& tableOfContents)
    : scenario_(plan.root()), tableOfContents_(tableOfContents.root()) {
  walkResources();
  walkTasks();
}

xml::Node Plan::referred(std::string_view kind, xml::Node reference) const {
  const auto id = reference.attributeText("idref");
  return id ? singleObjectForXQuery(scenario_, xml::Query::child(kind, "id", *id)) : xml::Node();
}

bool Plan::isWritten(const PlanResource& resource) { return mspdiResourceType(typeOf(resource.node)).has_value(); }

void Plan::walkResources() {
  std::vector<PlanResource> stack;
  const xml::Node top = referred("resource", singleObjectForXQuery(scenario_, "top-resource"));
  if (top) stack.push_back({top, std::nullopt});
  while (!stack.empty()) {
    const PlanResource resource = stack.back();
    stack.pop_back();
    const std::size_t index = resources_.size();
    resources_.push_back(resource);
    if (typeOf(resource.node) != kGroupResource) continue;
    pushMembers(stack, objectsForXQuery(resource.node, "child-resource"), [&](auto& to, xml::Node reference) {
      if (const xml::Node member = referred("resource", reference)) to.push_back({member, index});
    });
  }
}

void Plan::walkTasks() {
  std::vector<xml::Node> stack;
  const xml::Node top = referred("task", singleObjectForXQuery(scenario_, "top-task"));
  if (top) stack.push_back(top);
  while (!stack.empty()) {
    const xml::Node task = stack.back();
    stack.pop_back();
    tasks_.push_back(task);
    addAssignments(task);
    if (typeOf(task) != "group") continue;
    pushMembers(stack, objectsForXQuery(task, "child-task"), [&](auto& to, xml::Node reference) {
      if (const xml::Node child = referred("task", reference)) to.push_back(child);
    });
  }
}

/// A task that nobody is assigned to gets one assignment all the same, a group none.
void Plan::addAssignments(xml::Node task) {
  const std::size_t index = tasks_.size() - 1;
  const auto assignments = objectsForXQuery(task, "assignment");
  for (const xml::Node assignment : assignments) {
    assignments_.push_back({index, assignment, referred("resource", assignment)});
  }
  if (assignments.empty() && typeOf(task) != "group") assignments_.push_back({index, {}, {}});
}

}  // namespace conform
