#include "Conform/Currency.h"

#include <fmt/format.h>

#include <string>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Platform/Text/LocaleCurrencies.h"

namespace conform {
namespace {

struct Choice {
  std::string code;
  std::string reason;
};

Choice choose(const std::string& said) {
  if (!said.empty()) return {said, "as the command line says"};
  if (const auto machine = platform::currencyOfMachine()) {
    return {machine->code, fmt::format("which the machine's locale {} has", machine->locale)};
  }
  return {"USD", "because nothing tells the currency"};
}

}  // namespace

void correctCurrency(Copy& copy) {
  const auto [symbol, code] = childrenOf(copy.project, "CurrencySymbol", "CurrencyCode");
  if (!isBlank(textOf(code))) return;
  const Choice choice = choose(copy.options().currency);
  copy.report.warn(fmt::format("the currency's symbol \"{}\" tells no code: it is {} now, {}", textOf(symbol),
                               choice.code, choice.reason));
  setText(copy.project, code, "CurrencyCode", choice.code);
  copy.report.count("projects without a currency");
}

}  // namespace conform
