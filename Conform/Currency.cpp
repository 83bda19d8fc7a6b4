#include "Conform/Currency.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Platform/Text/LocaleCurrencies.h"

namespace conform {
namespace {

struct Choice {
  std::string code;
  std::string reason;
};

/// A symbol that several currencies share, and the currency that nearly every plan with it means.
struct UsualCode {
  std::string_view symbol;
  std::string_view code;
};
constexpr std::array<UsualCode, 2> kUsualCodes = {{{"£", "GBP"}, {"¥", "JPY"}}};

Choice choose(std::string_view symbol, const std::string& said) {
  if (!said.empty()) return {said, "as the command line says"};
  const auto* usual = std::find_if(kUsualCodes.begin(), kUsualCodes.end(),
                                   [symbol](const UsualCode& entry) { return entry.symbol == symbol; });
  if (usual != kUsualCodes.end()) return {std::string(usual->code), "which it usually stands for"};
  if (const auto machine = platform::currencyOfMachine()) {
    return {machine->code, fmt::format("which the machine's locale {} has", machine->locale)};
  }
  return {"USD", "because nothing tells the currency"};
}

}  // namespace

void correctCurrency(Copy& copy) {
  const auto [symbol, code] = childrenOf(copy.project, "CurrencySymbol", "CurrencyCode");
  if (!isBlank(textOf(code))) return;
  const Choice choice = choose(textOf(symbol), copy.options().currency);
  copy.report.warn(fmt::format("the currency's symbol \"{}\" has several codes or none: {} is written, {}",
                               textOf(symbol), choice.code, choice.reason));
  setText(copy.project, code, "CurrencyCode", choice.code);
  copy.report.count("projects without a currency");
}

}  // namespace conform
