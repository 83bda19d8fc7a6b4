#include "Platform/Text/LocaleCurrencies.h"

#include <unicode/ucurr.h>
#include <unicode/uenum.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <utility>

#include "Platform/Text/Status.h"

namespace platform {
namespace {

/// A text that ends with 0; the first character is 0 when there is no currency.
using Code = std::array<UChar, 8>;

Code codeOf(const char* locale) {
  Code code{};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = ucurr_forLocale(locale, code.data(), code.size(), &status);
  if (hasFailed(status) || length == 0) code.front() = 0;
  return code;
}

std::string asText(const UChar* characters, std::int32_t length = -1) {
  std::string text;
  icu::UnicodeString(characters, length).toUTF8String(text);
  return text;
}

/// Empty when the locale has none.
std::string symbolOf(const UChar* code, const char* locale, UCurrNameStyle style) {
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  const UChar* symbol = ucurr_getName(code, locale, style, nullptr, &length, &status);
  return hasFailed(status) ? "" : asText(symbol, length);
}

/// Calls visit(code) for each currency that is in use today.
void forEachCode(const std::function<void(const UChar*)>& visit) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UEnumeration, decltype(&uenum_close)> codes(
      ucurr_openISOCurrencies(UCURR_COMMON | UCURR_NON_DEPRECATED, &status), &uenum_close);
  while (const UChar* code = uenum_unext(codes.get(), nullptr, &status)) visit(code);
}

}  // namespace

void forEachLocaleCurrency(const std::function<bool(const LocaleCurrency&)>& visit) {
  // Go by the locales' names: making the library's list of locale objects takes longer than exporting a small plan.
  const std::int32_t count = uloc_countAvailable();
  for (std::int32_t i = 0; i < count; ++i) {
    const char* locale = uloc_getAvailable(i);
    const Code code = codeOf(locale);
    if (code.front() == 0) continue;

    std::string symbol = symbolOf(code.data(), locale, UCURR_SYMBOL_NAME);
    if (symbol.empty()) continue;
    if (!visit({std::move(symbol), asText(code.data())})) return;
  }
}

std::vector<std::string> currenciesWithSymbol(std::string_view symbol) {
  std::vector<std::string> codes;
  forEachCode([&](const UChar* code) {
    // The narrow symbol is that of people who have no other currency in mind: "$" for all dollars.
    for (const UCurrNameStyle style : {UCURR_SYMBOL_NAME, UCURR_NARROW_SYMBOL_NAME}) {
      if (symbolOf(code, "en", style) != symbol) continue;
      codes.push_back(asText(code));
      break;
    }
  });
  std::sort(codes.begin(), codes.end());
  return codes;
}

bool isCurrencyCode(std::string_view text) {
  bool isCode = false;
  forEachCode([&](const UChar* code) { isCode = isCode || asText(code) == text; });
  return isCode;
}

std::optional<MachineCurrency> currencyOfMachine() {
  for (const char* variable : {"LC_ALL", "LC_MONETARY", "LANG"}) {
    const char* locale = std::getenv(variable);
    if (locale == nullptr || std::string_view(locale).empty()) continue;
    const Code code = codeOf(locale);
    if (code.front() == 0) return std::nullopt;
    return MachineCurrency{asText(code.data()), locale};
  }
  return std::nullopt;
}

}  // namespace platform
