#include "Conform/Currency.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"
#include "Platform/Text/LocaleCurrencies.h"

namespace conform {
namespace {

/// A symbol that several currencies share, and the currency that nearly every plan with it means.
struct UsualCode {
  std::string_view symbol;
  std::string_view digits;  ///< behind the decimal point; empty for any number
  std::string_view code;
};
constexpr std::array<UsualCode, 5> kUsualCodes = {
    {{"$", "", "USD"}, {"€", "", "EUR"}, {"£", "", "GBP"}, {"¥", "0", "JPY"}, {"¥", "2", "CNY"}}};

/// Empty when the symbol has no usual code.
std::string_view usualCodeOf(std::string_view symbol, std::string_view digits) {
  const auto* usual = std::find_if(kUsualCodes.begin(), kUsualCodes.end(), [&](const UsualCode& entry) {
    return entry.symbol == symbol && (entry.digits.empty() || entry.digits == digits);
  });
  return usual == kUsualCodes.end() ? std::string_view() : usual->code;
}

struct Choice {
  std::string code;
  std::string reason;  ///< empty when the symbol determines the code
};

/// Chooses among the currencies that share the plan's symbol.
class Chooser {
 public:
  /// @param written the code that the exporter found; empty when it found several or none.
  Chooser(std::string_view symbol, std::string_view digits, std::string_view written)
      : symbol_(symbol), written_(written), usual_(usualCodeOf(symbol, digits)) {}

  /// @param said the code of the command line; empty when it has none.
  [[nodiscard]] Choice choose(const std::string& said) {
    if (written_.empty() && platform::isCurrencyCode(symbol_)) return {std::string(symbol_), ""};
    if (!written_.empty() && (said.empty() ? usual_ : said) == written_) return {std::string(written_), ""};
    listCandidates();
    if (!said.empty() && (written_.empty() || isCandidate(said))) return {said, "as the command line says"};
    if (candidates_.size() == 1) return {candidates_[0], ""};
    return chooseAmongMany();
  }

 private:
  /// In texts, a symbol that is an abbreviation may end with a point: "Rs.".
  void listCandidates() {
    std::string_view symbol = symbol_;
    if (symbol.ends_with('.')) symbol.remove_suffix(1);
    candidates_ = platform::currenciesWithSymbol(symbol);
    if (!written_.empty() && !isCandidate(written_)) candidates_.emplace_back(written_);
  }

  [[nodiscard]] bool isCandidate(std::string_view code) const {
    return std::find(candidates_.begin(), candidates_.end(), code) != candidates_.end();
  }

  [[nodiscard]] Choice chooseAmongMany() const {
    if (!usual_.empty()) return {std::string(usual_), "which it usually stands for"};
    const auto machine = platform::currencyOfMachine();
    if (machine && (candidates_.empty() || isCandidate(machine->code))) {
      return {machine->code, fmt::format("which the machine's locale {} has", machine->locale)};
    }
    const std::string otherwise = candidates_.empty() ? "USD" : candidates_[0];
    return {written_.empty() ? otherwise : std::string(written_), "because nothing tells the currency"};
  }

  std::string_view symbol_;
  std::string_view written_;
  std::string_view usual_;
  std::vector<std::string> candidates_;
};

}  // namespace

void correctCurrency(Copy& copy) {
  const auto [symbol, code, digits] = childrenOf(copy.project, "CurrencySymbol", "CurrencyCode", "CurrencyDigits");
  // Without the bundle, a code may be one that was chosen before.
  if (!isBlank(textOf(code)) && copy.plan() == nullptr) return;
  const std::string written(isBlank(textOf(code)) ? "" : textOf(code));
  const std::string& said = copy.options().currency;
  const Choice choice = Chooser(textOf(symbol), textOf(digits), written).choose(said);
  if (!said.empty() && said != choice.code) {
    copy.report.warn(
        fmt::format("the currency's symbol \"{}\" does not stand for {}, which the command line says: {} "
                    "is written",
                    textOf(symbol), said, choice.code));
  } else if (!choice.reason.empty()) {
    copy.report.warn(fmt::format("the currency's symbol \"{}\" has several codes or none: {} is written, {}",
                                 textOf(symbol), choice.code, choice.reason));
  }
  if (setText(copy.project, code, "CurrencyCode", choice.code)) copy.report.count("codes of the currency");
}

}  // namespace conform
