#include "Conform/ProjectName.h"

#include <string>

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {
namespace {

bool isNameless(pugi::xml_node element) { return isBlank(textOf(element, "Name")); }

void name(pugi::xml_node element, std::string_view name) { setText(element, element.child("Name"), "Name", name); }

}  // namespace

void correctProjectName(Copy& copy) {
  const std::string_view title = textOf(copy.project, "Title");
  const std::string given = isBlank(title) ? copy.options().baseName : std::string(title);
  if (isNameless(copy.project)) {
    name(copy.project, given);
    copy.report.count("projects without a name");
  }
  for (const Item& task : copy.tasks) {
    if (textOf(task.element, "OutlineLevel") != "0") continue;
    if (isNameless(task.element)) {
      name(task.element, given);
      copy.report.count("top tasks without a name");
    }
    return;
  }
}

}  // namespace conform
