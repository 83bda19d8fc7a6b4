#include "Conform/Labels.h"

#include <fmt/format.h>

#include "Conform/Elements.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Text/Texts.h"

namespace conform {
namespace {

std::string withName(std::string identifier, std::string_view name) {
  return name.empty() ? identifier : fmt::format("{} '{}'", identifier, platform::shortened(name));
}

std::string idOf(xml::Node source) { return platform::shortened(source.attribute("id").value()); }

}  // namespace

std::string shortLabelOf(const Item& item) {
  const std::string kind = platform::lowercased(item.element.name());
  if (item.source) return kind + " " + idOf(item.source);
  const std::string_view uid = textOf(item.element, "UID");
  return uid.empty() ? kind + " without a UID" : fmt::format("{} {}", kind, platform::shortened(uid));
}

std::string labelOf(const Item& item) { return withName(shortLabelOf(item), textOf(item.element, "Name")); }

std::string shortLabelOf(const CalendarItem& calendar) {
  if (calendar.source != nullptr) return "calendar of " + idOf(calendar.source->node);
  return fmt::format("calendar {}", platform::shortened(textOf(calendar.element, "UID")));
}

std::string sourceLabelOf(xml::Node object, const char* nameElement) {
  return withName(idOf(object), singleObjectForXQuery(object, std::string_view(nameElement)).stringView());
}

}  // namespace conform
