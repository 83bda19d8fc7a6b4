#include "Conform/Completion.h"

#include <cmath>

#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Base/Wide.h"
#include "Platform/Text/Texts.h"

namespace conform {
namespace {

/// Fifteen decimals: a double keeps these of any decimal text.
constexpr std::int64_t kFractions = 1'000'000'000'000'000;

}  // namespace

std::int64_t shareOf(std::int64_t whole, std::int64_t part, std::int64_t of) {
  const platform::Wide divisor = static_cast<platform::Wide>(of) * 2;
  return platform::saturated((static_cast<platform::Wide>(whole) * part * 2 + of) / divisor);
}

Completion Completion::ofTask(xml::Node task) {
  const std::int64_t effort = intValueForXQuery(task, "effort");
  const std::int64_t effortDone = intValueForXQuery(task, "effort-done");
  if (effort > 0 && effortDone > 0) return {effortDone, effort};
  const double completion = floatValueForXQuery(task, "completion-percentage");
  if (!(completion > 0)) return {};
  return {platform::truncated<std::int64_t>(std::round(completion * static_cast<double>(kFractions))), kFractions};
}

}  // namespace conform
