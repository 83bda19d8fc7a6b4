#include "Conform/Links.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Text/Texts.h"

namespace conform {
namespace {

constexpr std::string_view kPercentages = "19";

/// Sets the lag of a link whose `lead-time` is a percentage. The exporter cuts 0.29 * 100 to 28.
/// @return whether that changed anything.
bool roundPercentage(const LinkItem& link, pugi::xml_node lag) {
  if (!link.source || textOf(link.element, "LagFormat") != kPercentages) return false;
  const xml::Node leadTime = singleObjectForXQuery(link.source, "lead-time");
  const double percent = std::round(platform::doubleValue(leadTime.stringView()) * 100);
  return setText(lag, std::to_string(platform::truncated<std::int64_t>(percent)));
}

}  // namespace

void correctLinks(Copy& copy) {
  std::size_t missing = 0;
  std::size_t percentages = 0;
  for (const LinkItem& link : copy.links) {
    const pugi::xml_node lag = link.element.child("LinkLag");
    if (isBlank(textOf(lag))) {
      if (setText(link.element, lag, "LinkLag", "0")) ++missing;
    } else if (roundPercentage(link, lag)) {
      ++percentages;
    }
  }
  copy.report.count("links without a lag", missing);
  copy.report.count("percentages of lags", percentages);
}

}  // namespace conform
