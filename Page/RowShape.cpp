#include "Page/RowShape.h"

#include <fmt/format.h>

#include <cmath>

namespace page {

std::string number(double x) {
  const auto tenths = static_cast<long long>(std::llround(x * 10));
  if (tenths % 10 == 0) return fmt::format("{}", tenths / 10);
  return fmt::format("{}{}.{}", tenths < 0 ? "-" : "", std::llabs(tenths / 10), std::llabs(tenths % 10));
}

}  // namespace page
