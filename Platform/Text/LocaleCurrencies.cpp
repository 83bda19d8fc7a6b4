#include "Platform/Text/LocaleCurrencies.h"

#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <array>

namespace platform {

void forEachLocaleCurrency(const std::function<bool(const LocaleCurrency&)>& visit) {
  // By names alone: the library's list of locale objects takes longer to make than a small plan to export.
  const std::int32_t count = uloc_countAvailable();
  for (std::int32_t i = 0; i < count; ++i) {
    const char* locale = uloc_getAvailable(i);
    std::array<UChar, 8> code{};
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t codeLength = ucurr_forLocale(locale, code.data(), code.size(), &status);
    if (U_FAILURE(status) || codeLength == 0) continue;

    std::int32_t symbolLength = 0;
    status = U_ZERO_ERROR;
    const UChar* symbol = ucurr_getName(code.data(), locale, UCURR_SYMBOL_NAME, nullptr, &symbolLength, &status);
    if (U_FAILURE(status) || symbolLength == 0) continue;

    LocaleCurrency currency;
    icu::UnicodeString(symbol, symbolLength).toUTF8String(currency.symbol);
    icu::UnicodeString(code.data(), codeLength).toUTF8String(currency.code);
    if (!visit(currency)) return;
  }
}

}  // namespace platform
