#include "Page/Details.h"

#include <fmt/format.h>

#include <string>

#include "Page/Html.h"

namespace page {
namespace {

template <typename Object>
bool hasAny(const Object& object) {
  return !object.notes.empty() || !object.fields.empty();
}

/// @param anchor the target of links; inside the folded part, so that a browser unfolds it.
template <typename Object>
std::string entry(const Object& object, std::string_view number, std::string_view anchor, std::size_t index) {
  std::string text;
  add(text, R"(<details><summary>{} {}</summary><div id="{}{}">)", escaped(number), escaped(object.name), anchor,
      index);
  if (!object.notes.empty()) add(text, "<p>{}</p>", escaped(object.notes));
  if (!object.fields.empty()) text += "<dl>";
  for (const conform::FileField& field : object.fields) {
    add(text, "<dt>{}</dt><dd>{}</dd>", escaped(field.name), escaped(field.value));
  }
  if (!object.fields.empty()) text += "</dl>";
  text += "</div></details>\n";
  return text;
}

/// Writes entries, with a heading in front of the first; no heading without entries.
class Headed {
 public:
  Headed(std::string_view heading, const std::function<void(std::string_view)>& sink)
      : heading_(heading), sink_(sink) {}

  void write(const std::string& entry) {
    if (!hasEntries_) sink_(fmt::format("<h3>{}</h3>\n", heading_));
    hasEntries_ = true;
    sink_(entry);
  }
  [[nodiscard]] bool hasEntries() const { return hasEntries_; }

 private:
  std::string_view heading_;
  const std::function<void(std::string_view)>& sink_;
  bool hasEntries_ = false;
};

}  // namespace

bool hasDetails(const conform::FileTask& task) { return hasAny(task); }
bool hasDetails(const conform::FileResource& resource) { return hasAny(resource); }

void writeDetails(const conform::PlanFile& plan, const Rows& rows, const std::function<void(std::string_view)>& sink) {
  Headed tasks("Tasks", sink);
  for (std::size_t i = 0; i < rows.list().size(); ++i) {
    const Row& row = rows.list()[i];
    if (hasDetails(*row.task)) tasks.write(entry(*row.task, row.number, kTaskDetails, i));
  }
  Headed resources("Resources", sink);
  for (std::size_t i = 0; i < plan.resources.size(); ++i) {
    const conform::FileResource& resource = plan.resources[i];
    if (hasDetails(resource)) resources.write(entry(resource, resource.number, kResourceDetails, i));
  }
  if (!tasks.hasEntries() && !resources.hasEntries()) sink("<p>None.</p>\n");
}

}  // namespace page
