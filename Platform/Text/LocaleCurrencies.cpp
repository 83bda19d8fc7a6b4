#include "Platform/Text/LocaleCurrencies.h"

#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace platform {
namespace {

/// A text that ends with 0; the first character is 0 when there is no currency.
using Code = std::array<UChar, 8>;

Code codeOf(const char* locale) {
  Code code{};
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = ucurr_forLocale(locale, code.data(), code.size(), &status);
  if (U_FAILURE(status) || length == 0) code.front() = 0;
  return code;
}

std::string asText(const UChar* characters, std::int32_t length = -1) {
  std::string text;
  icu::UnicodeString(characters, length).toUTF8String(text);
  return text;
}

}  // namespace

void forEachLocaleCurrency(const std::function<bool(const LocaleCurrency&)>& visit) {
  // Go by the locales' names: making the library's list of locale objects takes longer than exporting a small plan.
  const std::int32_t count = uloc_countAvailable();
  for (std::int32_t i = 0; i < count; ++i) {
    const char* locale = uloc_getAvailable(i);
    const Code code = codeOf(locale);
    if (code.front() == 0) continue;

    std::int32_t symbolLength = 0;
    UErrorCode status = U_ZERO_ERROR;
    const UChar* symbol = ucurr_getName(code.data(), locale, UCURR_SYMBOL_NAME, nullptr, &symbolLength, &status);
    if (U_FAILURE(status) || symbolLength == 0) continue;
    if (!visit({asText(symbol, symbolLength), asText(code.data())})) return;
  }
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
