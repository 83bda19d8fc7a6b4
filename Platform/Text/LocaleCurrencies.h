#pragma once

#include <functional>
#include <string>

namespace platform {

/// What one locale calls its currency.
struct LocaleCurrency {
  std::string symbol;  ///< as people of the locale write it, UTF-8: "$", "kr", "€"
  std::string code;    ///< ISO 4217: "USD"
};

/// Calls visit(currency) for the currency of each locale that the platform knows, until it returns false; locales
/// without a currency are left out. To the end it takes some milliseconds.
void forEachLocaleCurrency(const std::function<bool(const LocaleCurrency &)> &visit);

}  // namespace platform
