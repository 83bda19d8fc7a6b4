#include "Conform/KeepDates.h"

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {
namespace {

void keep(pugi::xml_node task, pugi::xml_node kept, const char* name, pugi::xml_node value) {
  if (!isBlank(textOf(value))) setText(task, kept, name, textOf(value));
}

}  // namespace

void keepDates(Copy& copy) {
  if (!copy.options().keepDates) return;
  std::size_t kept = 0;
  for (const Item& item : copy.tasks) {
    const pugi::xml_node task = item.element;
    if (textOf(task, "Summary") == "1") continue;
    const auto [manual, start, finish, duration, manualStart, manualFinish, manualDuration] =
        childrenOf(task, "Manual", "Start", "Finish", "Duration", "ManualStart", "ManualFinish", "ManualDuration");
    setText(task, manual, "Manual", "1");
    keep(task, manualStart, "ManualStart", start);
    keep(task, manualFinish, "ManualFinish", finish);
    keep(task, manualDuration, "ManualDuration", duration);
    ++kept;
  }
  copy.report.count("tasks scheduled by hand", kept);
}

}  // namespace conform
