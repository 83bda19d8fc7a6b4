#include "Conform/Rates.h"

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {
namespace {

constexpr std::string_view kMaterial = "0";
constexpr std::string_view kByUnit = "8";

}  // namespace

void correctRates(Copy& copy) {
  std::size_t changed = 0;
  for (const Item& resource : copy.resources) {
    const auto [type, rate, format] = childrenOf(resource.element, "Type", "StandardRate", "StandardRateFormat");
    if (textOf(type) != kMaterial || isBlank(textOf(rate))) continue;
    if (setText(resource.element, format, "StandardRateFormat", kByUnit)) ++changed;
  }
  copy.report.count("rates of materials", changed);
}

}  // namespace conform
