#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"

#include <algorithm>
#include <array>

#include "KVMSPCommon/MSPCExtensions.h"
#include "Platform/Text/LocaleCurrencies.h"
#include "Platform/Text/RegularExpression.h"

namespace {

constexpr const char* kFormatExpression = "([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*)";

/// The currency meant by a symbol that several currencies have.
struct SharedSymbol {
  std::string_view symbol;
  std::string_view code;
};
constexpr std::array<SharedSymbol, 4> kSharedSymbols = {
    {{"P", "BWP"}, {"$", "USD"}, {"kr", "SEK"}, {"\xEF\xBF\xA5", "JPY"}}};

/// The code of the only currency with the symbol, or of the one meant among several. The locale data is read no further
/// than it takes to tell.
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

void MSPECurrencyFormatMapper::parseCurrencyFormat(const std::string& format) {
  const auto groups = platform::PosixRegularExpression(kFormatExpression).match(format);
  if (groups.empty()) return;
  const platform::MatchRange& leadBlank = groups[1];
  const platform::MatchRange& decimals = groups[3];
  const platform::MatchRange& trailBlank = groups[4];

  currencyDigits_ = decimals.present() ? static_cast<std::int64_t>(decimals.length) - 1 : 0;
  // Blanks between symbol and number belong to neither, so the symbol ends, or begins, where the whole match does.
  const std::string prefix = format.substr(0, groups[0].start);
  const std::string suffix = format.substr(groups[0].end());
  currencySymbol_.reset();
  currencyCode_.reset();
  if (!prefix.empty()) {
    currencySymbol_ = prefix;
    currencySymbolPosition_ = leadBlank.present() ? 2 : 0;
  } else if (!suffix.empty()) {
    currencySymbol_ = suffix;
    currencySymbolPosition_ = trailBlank.present() ? 3 : 1;
  }
  if (currencySymbol_) currencyCode_ = codeOfSymbol(*currencySymbol_);
}
