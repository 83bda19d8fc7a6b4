#include "Page/Resources.h"

#include <fmt/format.h>

#include <iterator>
#include <string>

#include "Page/Details.h"
#include "Page/Display.h"
#include "Page/Html.h"

namespace page {
namespace {

std::string_view kindOf(const conform::FileResource& resource) {
  switch (resource.type) {
    case 0:
      return "Material";
    case 1:
      return "Work";
    case 2:
      return "Cost";
    default:
      return "";
  }
}

std::string calendarName(const conform::FileResource& resource, const conform::PlanFile& plan,
                         const conform::FileCalendars& calendars) {
  const auto index = calendars.find(resource.calendarUid);
  if (index) return plan.calendars[*index].name;
  return resource.calendarUid.empty() || resource.calendarUid == "-1" ? "" : "unknown UID " + resource.calendarUid;
}

}  // namespace

void writeResources(const conform::PlanFile& plan, const conform::FileCalendars& calendars,
                    const std::function<void(std::string_view)>& sink) {
  for (std::size_t i = 0; i < plan.resources.size(); ++i) {
    const conform::FileResource& resource = plan.resources[i];
    const std::string link =
        hasDetails(resource)
            ? fmt::format(R"( <a href="#{}{}" title="Notes and fields">&#9998;</a>)", kResourceDetails, i)
            : "";
    sink(fmt::format(R"(<tr><td>{}</td><th scope="row">{}{}</th><td>{}</td><td>{}</td><td>{}</td><td>{}</td>)"
                     "<td>{}</td><td>{}</td></tr>\n",
                     escaped(resource.number), escaped(resource.name), link, kindOf(resource),
                     percentText(resource.unitsAvailable), escaped(rateText(resource, plan)),
                     escaped(costText(resource.costPerUse, plan)), escaped(resource.group),
                     escaped(calendarName(resource, plan, calendars))));
  }
}

}  // namespace page
