#include "Conform/References.h"

#include <fmt/format.h>

#include <unordered_map>
#include <unordered_set>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Conform/Facts.h"
#include "Conform/Labels.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Base/IdHash.h"

namespace conform {
namespace {

/// The tasks or resources of the file, by their identifiers as written.
class Known {
 public:
  void add(const Item& item) {
    const std::string_view uid = textOf(item.element, "UID");
    if (!uid.empty()) {
      uids_.insert(uid);
    } else {
      unnumbered_ = item.source;
      ++unnumberedCount_;
    }
  }
  /// Whether a reference leads to one of them. An empty identifier needs more than a look-up, since several objects of
  /// the bundle may have none in the file.
  /// @param source the object that the bundle's reference leads to.
  /// @param hasPlan whether there is a bundle.
  [[nodiscard]] bool has(std::string_view uid, xml::Node source, bool hasPlan) const {
    if (!uid.empty()) return uids_.contains(uid);
    return unnumberedCount_ == 1 && (!hasPlan || (source && source == unnumbered_));
  }

 private:
  std::unordered_set<std::string_view, platform::IdHash> uids_;
  xml::Node unnumbered_;  ///< the source of the object without an identifier
  std::size_t unnumberedCount_ = 0;
};

std::string lackOf(std::string_view kind, std::string_view uid) {
  return uid.empty() ? fmt::format("it names no {}", kind) : fmt::format("its {} {} is not there", kind, uid);
}

class References {
 public:
  explicit References(Copy& copy) : copy_(copy) {
    for (const Item& task : copy.tasks) tasks_.add(task);
    for (const Item& resource : copy.resources) {
      if (!copy.isPlaceholder(resource)) resources_.add(resource);
    }
  }

  void correctLinks() {
    const std::size_t before = copy_.links.size();
    std::erase_if(copy_.links, [this](const LinkItem& link) {
      if (leadsToATask(link)) return false;
      copy_.report.warn(fmt::format("{}: its link to {} is left out, because the file has no such task",
                                    labelOfTask(copy_.tasks[link.task]), linkTarget(link)));
      link.element.parent().remove_child(link.element);
      return true;
    });
    copy_.report.count("links to tasks that are not there", before - copy_.links.size());
  }

  void correctAssignments() {
    std::size_t toNobody = 0;
    for (const AssignmentItem& assignment : copy_.assignments) {
      const pugi::xml_node resource = assignment.element.child("ResourceUID");
      if (textOf(resource) == kNobody) continue;
      const xml::Node source = assignment.source != nullptr ? assignment.source->resource : xml::Node();
      if (resources_.has(textOf(resource), source, hasPlan())) continue;
      sayNobody(assignment, textOf(resource));
      setText(assignment.element, resource, "ResourceUID", kNobody);
      ++toNobody;
    }
    copy_.report.count("assignments to groups or to nothing", toNobody);
  }

  void leaveOutAssignmentsOfNoTask() {
    const auto isOfNoTask = [this](const AssignmentItem& assignment) {
      const xml::Node source = assignment.source != nullptr ? copy_.tasks[assignment.source->task].source : xml::Node();
      return !tasks_.has(textOf(assignment.element, "TaskUID"), source, hasPlan());
    };
    const std::size_t before = copy_.assignments.size();
    std::erase_if(copy_.assignments, [&](const AssignmentItem& assignment) {
      if (!isOfNoTask(assignment)) return false;
      copy_.report.warn(fmt::format("assignment {} is left out, because {}", textOf(assignment.element, "UID"),
                                    lackOf("task", textOf(assignment.element, "TaskUID"))));
      assignment.element.parent().remove_child(assignment.element);
      return true;
    });
    copy_.report.count("assignments of tasks that are not there", before - copy_.assignments.size());
  }

 private:
  [[nodiscard]] bool hasPlan() const { return copy_.plan() != nullptr; }

  [[nodiscard]] bool leadsToATask(const LinkItem& link) const {
    const std::string_view uid = textOf(link.element, "PredecessorUID");
    const bool needsSource = uid.empty() && hasPlan();
    return tasks_.has(uid, needsSource ? copy_.plan()->referred("task", link.source) : xml::Node(), hasPlan());
  }

  [[nodiscard]] std::string linkTarget(const LinkItem& link) const {
    const std::string_view target =
        hasPlan() ? link.source.attribute("idref").value() : textOf(link.element, "PredecessorUID");
    return target.empty() ? "nothing" : std::string(target);
  }

  void sayNobody(const AssignmentItem& assignment, std::string_view uid) {
    if (assignment.source == nullptr) {
      copy_.report.warn(fmt::format("assignment {} is to nobody, because {}", textOf(assignment.element, "UID"),
                                    lackOf("resource", uid)));
      return;
    }
    copy_.report.warn(fmt::format("{}: its assignment to {}, which is no resource of the file, is to nobody",
                                  labelOfTask(copy_.tasks[assignment.source->task]),
                                  labelOfResource(assignment.source->resource)));
  }

  /// Cached for the next link or assignment of the task, since finding its name may take long.
  const std::string& labelOfTask(const Item& task) {
    if (labelled_ != &task) label_ = labelOf(task);
    labelled_ = &task;
    return label_;
  }

  /// Cached for the same reason. Assignments to several resources alternate, so all labels are kept.
  const std::string& labelOfResource(xml::Node resource) {
    const auto [label, isNew] = resourceLabels_.try_emplace(resource.identity());
    if (isNew) label->second = sourceLabelOf(resource, "name");
    return label->second;
  }

  Copy& copy_;
  const Item* labelled_ = nullptr;
  std::string label_;
  std::unordered_map<const void*, std::string> resourceLabels_;
  Known tasks_;
  Known resources_;
};

}  // namespace

void correctReferences(Copy& copy) {
  References references(copy);
  references.correctLinks();
  references.correctAssignments();
  references.leaveOutAssignmentsOfNoTask();
}

}  // namespace conform
