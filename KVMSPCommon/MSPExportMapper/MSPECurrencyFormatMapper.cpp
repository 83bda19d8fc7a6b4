#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"

#include <algorithm>
#include <utility>

#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Base/Memo.h"
#include "Platform/Text/LocaleCurrencies.h"

namespace {

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kDigitsAndComma = "0123456789,";
constexpr std::string_view kBlanks = " \t\n\v\f\r";

/// The end of the run of characters of the set that begins at the position.
std::size_t endOf(std::string_view set, std::string_view text, std::size_t at) {
  return std::min(text.find_first_not_of(set, at), text.size());
}

/// The currency that a symbol of several currencies stands for.
struct SharedSymbol {
  std::string_view symbol;
  std::string_view code;
};
constexpr std::array<SharedSymbol, 4> kSharedSymbols = {
    {{"P", "BWP"}, {"$", "USD"}, {"kr", "SEK"}, {"\xEF\xBF\xA5", "JPY"}}};

/// The code of the only currency with this symbol, or of the one that a shared symbol stands for. Stops reading the
/// locale data as soon as the answer is certain.
std::optional<std::string> codeOfSymbol(const std::string& symbol) {
  std::optional<std::string> code;
  bool isShared = false;
  platform::forEachLocaleCurrency([&](const platform::LocaleCurrency& currency) {
    if (currency.symbol != symbol) return true;
    isShared = code && *code != currency.code;
    code = currency.code;
    return !isShared;
  });
  if (!isShared) return code;
  const auto* meant = std::find_if(kSharedSymbols.begin(), kSharedSymbols.end(),
                                   [&symbol](const SharedSymbol& row) { return row.symbol == symbol; });
  if (meant == kSharedSymbols.end()) return std::nullopt;
  return std::string(meant->code);
}

}  // namespace

MSPECurrencyFormatMapper::MSPECurrencyFormatMapper(MSPEMapper& mapper) : MSPEObjectMapperBase(mapper) {
  const auto format = stringValueForXQuery(mapper.kvdxTOCXmlDoc()->root(), "//project/currency-format");
  if (format) parseCurrencyFormat(*format);
}

std::optional<MSPECurrencyFormatMapper::Amount> MSPECurrencyFormatMapper::amountIn(std::string_view sample) {
  const std::size_t digits = sample.find_first_of(kDigitsAndComma);
  if (digits == std::string_view::npos) return std::nullopt;
  // The match begins with the blanks directly in front of the digits; earlier blanks are followed by another character.
  const std::size_t start = digits == 0 ? 0 : sample.find_last_not_of(kBlanks, digits - 1) + 1;
  std::size_t end = endOf(kDigitsAndComma, sample, digits);
  Amount amount{{{}, {start, digits - start}, {digits, end - digits}, {}, {}}};
  while (sample.substr(end).starts_with('.') && endOf(kDigits, sample, end + 1) > end + 1) {
    const std::size_t point = std::exchange(end, endOf(kDigits, sample, end + 1));
    amount[3] = {point, end - point};
  }
  const std::size_t blanks = std::exchange(end, endOf(kBlanks, sample, end));
  amount[4] = {blanks, end - blanks};
  amount[0] = {start, end - start};
  return amount;
}

void MSPECurrencyFormatMapper::parseCurrencyFormat(const std::string& format) {
  const auto amount = amountIn(format);
  if (!amount) return;
  const auto& [whole, leadBlank, digits, decimals, trailBlank] = *amount;
  currencyDigits_ = decimals.present() ? static_cast<std::int64_t>(decimals.length) - 1 : 0;
  // The match includes the blanks around the number, so the symbol is what stands in front of the match or behind it.
  const std::string prefix = format.substr(0, whole.start);
  const std::string suffix = format.substr(whole.end());
  currencySymbol_.reset();
  currencyCode_.reset();
  if (!prefix.empty()) {
    currencySymbol_ = prefix;
    currencySymbolPosition_ = leadBlank.present() ? 2 : 0;
  } else if (!suffix.empty()) {
    currencySymbol_ = suffix;
    currencySymbolPosition_ = trailBlank.present() ? 3 : 1;
  }
  if (!currencySymbol_) return;
  static platform::Memo<std::string, std::optional<std::string>> codes;  // finding a code takes milliseconds
  currencyCode_ = codes.get(*currencySymbol_, [this] { return codeOfSymbol(*currencySymbol_); });
}
