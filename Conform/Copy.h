#pragma once

#include <functional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/Plan.h"
#include "Conform/Report.h"

namespace conform {

/// The choices of the user.
struct Options {
  std::string baseName;    ///< names a project without a title: the file's name without its extension, any bytes
  std::string currency;    ///< ISO 4217 code for a symbol that does not determine one; empty when not given
  bool keepDates = false;  ///< schedule every task by hand, so that no reader moves it
};

/// An element of the file, and its source in the plan; the source is empty without a bundle.
struct Item {
  pugi::xml_node element;
  xml::Node source;
};
/// A `PredecessorLink`, and its `prerequisite-task` in the plan.
struct LinkItem {
  pugi::xml_node element;
  std::size_t task = 0;  ///< index into Copy::tasks
  xml::Node source;
};
struct AssignmentItem {
  pugi::xml_node element;
  const PlanAssignment* source = nullptr;
};
struct CalendarItem {
  pugi::xml_node element;
  const PlanResource* source = nullptr;
};

/// An exported document while it is corrected. The corrections change `project` in place. They find its elements in the
/// lists, each with its source when there is a bundle. A correction that removes or adds a task, link, resource,
/// assignment or calendar must update the list.
class Copy {
 public:
  /// @param bytes an exported document in UTF-8 that has passed xml::requireCopyable().
  /// @param plan the bundle's plan, which must outlive the copy; none when only the file is at hand.
  /// @throws platform::Exception "ConformException" when the bytes are not Microsoft Project XML, and InvariantFailure
  /// when the file does not belong to the plan.
  Copy(std::string bytes, const Plan* plan, Options options);
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  pugi::xml_node project;
  std::vector<CalendarItem> calendars;
  std::vector<Item> tasks;
  std::vector<LinkItem> links;  ///< of all tasks
  std::vector<Item> resources;
  std::vector<AssignmentItem> assignments;
  Report report;

  /// None when only the file is at hand.
  [[nodiscard]] const Plan* plan() const { return plan_; }
  /// Whether the resource is the nameless one that the exporter writes in front of all others, which nothing refers to.
  [[nodiscard]] bool isPlaceholder(const Item& item) const;
  [[nodiscard]] const Options& options() const { return options_; }

  /// The document as well-formed UTF-8 XML, piece by piece.
  void serialize(const std::function<void(std::string_view)>& sink) const;

 private:
  void listElements();
  void pairWithPlan();
  void pairLinks();

  std::string bytes_;  ///< what the texts of unchanged elements point into
  pugi::xml_document document_;
  const Plan* plan_;
  Options options_;
};

}  // namespace conform
