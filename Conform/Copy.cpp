#include "Conform/Copy.h"

#include <utility>

#include "Conform/ExportedFile.h"
#include "Conform/Failure.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"
#include "Platform/XML/SinkWriter.h"
#include "Platform/XML/XMLStrict.h"
#include "Platform/XML/XMLText.h"

namespace conform {
namespace {

using platform::require;

constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_comments | pugi::parse_pi |
                                   pugi::parse_ws_pcdata_single | pugi::parse_embed_pcdata;
constexpr unsigned kWriteOptions = pugi::format_indent | pugi::format_no_declaration;

template <typename List>
void list(pugi::xml_node container, const char* name, List& to) {
  for (const pugi::xml_node element : container.children(name)) to.push_back({element, {}});
}

}  // namespace

Copy::Copy(std::string bytes, const Plan* plan, Options options)
    : bytes_(std::move(bytes)), plan_(plan), options_(std::move(options)) {
  // A file's name may have characters that XML does not allow.
  if (!xml::hasOnlyCharacters(options_.baseName)) options_.baseName = platform::printable(options_.baseName);
  project = parseExported(document_, bytes_, kParseOptions);
  listElements();
  if (plan_ != nullptr) pairWithPlan();
}

void Copy::listElements() {
  list(project.child("Calendars"), "Calendar", calendars);
  list(project.child("Tasks"), "Task", tasks);
  for (std::size_t i = 0; i < tasks.size(); ++i) {
    for (const pugi::xml_node link : tasks[i].element.children("PredecessorLink")) links.push_back({link, i, {}});
  }
  list(project.child("Resources"), "Resource", resources);
  list(project.child("Assignments"), "Assignment", assignments);
}

void Copy::pairWithPlan() {
  const auto check = [&](std::string_view kind, std::size_t found, std::size_t expected) {
    require(found == expected, "The exported document does not belong to the plan: {} {} in place of {}.", found, kind,
            expected);
  };
  check("calendars", calendars.size(), plan_->resources().size());
  for (std::size_t i = 0; i < calendars.size(); ++i) calendars[i].source = &plan_->resources()[i];

  check("tasks", tasks.size(), plan_->tasks().size());
  for (std::size_t i = 0; i < tasks.size(); ++i) tasks[i].source = plan_->tasks()[i];

  pairLinks();

  std::size_t written = 1;  // the first is the placeholder
  for (const PlanResource& resource : plan_->resources()) {
    if (!Plan::isWritten(resource)) continue;
    if (written < resources.size()) resources[written].source = resource.node;
    ++written;
  }
  check("resources", resources.size(), written);

  check("assignments", assignments.size(), plan_->assignments().size());
  for (std::size_t i = 0; i < assignments.size(); ++i) assignments[i].source = &plan_->assignments()[i];
}

/// The exporter writes one link for each `prerequisite-task`, in their order.
void Copy::pairLinks() {
  for (std::size_t i = 0; i < links.size();) {
    const std::size_t task = links[i].task;
    for (const xml::Node source : objectsForXQuery(tasks[task].source, "prerequisite-task")) {
      if (i < links.size() && links[i].task == task) links[i++].source = source;
    }
    while (i < links.size() && links[i].task == task) ++i;
  }
}

bool Copy::isPlaceholder(const Item& item) const {
  return !resources.empty() && &item == &resources.front() && !item.source && !item.element.child("Name") &&
         !item.element.child("MaxUnits");
}

void Copy::serialize(const std::function<void(std::string_view)>& sink) const {
  sink(xml::kDeclaration);
  xml::SinkWriter writer(sink);
  for (const pugi::xml_node node : document_.children())
    node.print(writer, xml::kIndent.data(), kWriteOptions, pugi::encoding_utf8);
}

}  // namespace conform
