#include "Page/TaskTable.h"

#include <fmt/format.h>

#include <algorithm>

#include "Page/Details.h"
#include "Page/Display.h"
#include "Page/Html.h"
#include "Page/RowChart.h"

namespace page {
namespace {

/// The number of rows that a browser lays out together when they come into view.
constexpr std::size_t kRowsOfPart = 40;
/// The resource of an assignment to nobody.
constexpr std::string_view kNobody = "-65535";

std::string_view classOf(const Row& row) {
  if (row.isHidden) return row.isGroup ? R"( class="s h")" : R"( class="h")";
  return row.isGroup ? R"( class="s")" : "";
}

void addCell(std::string& to, std::string_view text) { add(to, "<td>{}</td>", text); }

/// Adds date and time separately, so that the time can be hidden where there is little room.
void addMoment(std::string& to, std::optional<conform::CivilSeconds> moment) {
  const std::string text = dateTimeText(moment);
  const std::size_t time = text.find(' ');
  if (time == std::string::npos) return addCell(to, text);
  add(to, "<td>{}<i>{}</i></td>", text.substr(0, time), text.substr(time));
}

}  // namespace

TaskTable::TaskTable(const conform::PlanFile& plan, const Rows& rows, const LinkLines& links, const Timeline& timeline)
    : plan_(plan), rows_(rows), links_(links), timeline_(timeline) {
  for (const conform::FileResource& resource : plan.resources) resources_.emplace(resource.uid, &resource);
}

void TaskTable::write(const std::function<void(std::string_view)>& sink) const {
  const std::size_t count = rows_.list().size();
  std::string part;
  for (std::size_t first = 0; first < count; first += kRowsOfPart) {
    part.clear();
    addPart(part, first, std::min(first + kRowsOfPart, count));
    sink(part);
  }
}

void TaskTable::addPart(std::string& to, std::size_t first, std::size_t end) const {
  const auto* rows = rows_.list().data();
  const bool isHidden = std::all_of(rows + first, rows + end, [](const Row& row) { return row.isHidden; });
  to += isHidden ? "<tbody class=\"h\">\n" : "<tbody>\n";
  for (std::size_t i = first; i < end; ++i) addRow(to, i);
  to += "</tbody>\n";
}

void TaskTable::addRow(std::string& to, std::size_t index) const {
  const Row& row = rows_.list()[index];
  const conform::FileTask& task = *row.task;
  add(to, R"(<tr data-l="{}"{}><td>{}</td>)", row.depth, classOf(row), escaped(row.number));
  addName(to, row, index);
  addMoment(to, task.start);
  addMoment(to, task.finish);
  addCell(to, daysText(task.duration, plan_.minutesPerDay));
  addCell(to, hoursText(task.work));
  add(to, "<td>{} %</td>", task.percentComplete);
  addLinks(to, task);
  addResources(to, row);
  to += "<td>";
  drawRow(to, row, links_.of(index), timeline_);
  to += "</td></tr>\n";
}

void TaskTable::addName(std::string& to, const Row& row, std::size_t index) const {
  add(to, R"(<th scope="row">{})", escaped(row.task->name));
  if (hasDetails(*row.task)) {
    add(to, R"( <a href="#{}{}" title="Notes and fields">&#9998;</a>)", kTaskDetails, index);
  }
  to += "</th>";
}

void TaskTable::addLinks(std::string& to, const conform::FileTask& task) const {
  std::string text;
  for (const conform::FileLink& link : task.links) {
    const std::size_t index = rows_.indexOf(link.predecessorUid);
    const bool isKnown = index < rows_.list().size();
    add(text, "{}{} {}", text.empty() ? "" : ", ",
        isKnown ? escaped(rows_.list()[index].number) : "unknown UID " + escaped(link.predecessorUid),
        linkText(link, plan_.minutesPerDay));
  }
  addCell(to, text);
}

void TaskTable::addResources(std::string& to, const Row& row) const {
  std::string text;
  for (const conform::FileAssignment* assignment : row.assignments) {
    if (assignment->resourceUid == kNobody) continue;
    if (!text.empty()) text += ", ";
    text += assignedText(*assignment);
  }
  addCell(to, text);
}

std::string TaskTable::assignedText(const conform::FileAssignment& assignment) const {
  const auto found = resources_.find(assignment.resourceUid);
  if (found == resources_.end()) return "unknown UID " + escaped(assignment.resourceUid);
  const conform::FileResource& resource = *found->second;
  const std::string name = escaped(resource.name);
  if (resource.type == 0) {
    return fmt::format("{} [{}{}{}]", name, escaped(assignment.units), resource.unitName.empty() ? "" : " ",
                       escaped(resource.unitName));
  }
  const std::string units = percentText(assignment.units);
  return units.empty() || units == "100 %" ? name : fmt::format("{} [{}]", name, units);
}

}  // namespace page
