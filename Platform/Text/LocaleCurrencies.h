#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A locale's currency.
struct LocaleCurrency {
  std::string symbol;  ///< as people of the locale write it, UTF-8: "$", "kr", "€"
  std::string code;    ///< ISO 4217: "USD"
};

/// Calls visit(currency) for each locale that the platform knows and that has a currency, until it returns false.
/// Visiting all takes some milliseconds.
void forEachLocaleCurrency(const std::function<bool(const LocaleCurrency &)> &visit);

/// The codes of the currencies that share a symbol, in the order of the alphabet: "kr" gives DKK, ISK, NOK and SEK,
/// "A$" gives AUD, and a symbol that English does not know gives none. Takes some 20 milliseconds.
[[nodiscard]] std::vector<std::string> currenciesWithSymbol(std::string_view symbol);
/// Whether the text is the ISO 4217 code of a currency of today: "EUR".
[[nodiscard]] bool isCurrencyCode(std::string_view text);

/// The currency of a locale, and the locale's name as the system has it.
struct MachineCurrency {
  std::string code;    ///< ISO 4217
  std::string locale;  ///< "de_DE.UTF-8"
};
/// The currency of the country that the machine's locale for money names: LC_ALL, else LC_MONETARY, else LANG, the
/// first that is not empty. None when it names no country, as "C" does.
[[nodiscard]] std::optional<MachineCurrency> currencyOfMachine();

}  // namespace platform
