#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/Text/RegularExpression.h"

/// Derives the project's currency settings from the sample amount in the table of contents (project/currency-format),
/// such as "$1,234.56". Only "." counts as the decimal point, whatever the currency.
class MSPECurrencyFormatMapper final : public MSPEObjectMapperBase {
 public:
  /// Reads the sample. Without one, or when it holds no number: 2 digits, "$", "USD", position 0.
  explicit MSPECurrencyFormatMapper(MSPEMapper& mapper);

  /// Digits behind the decimal point.
  [[nodiscard]] std::int64_t currencyDigits() const { return currencyDigits_; }
  /// What stands before the number, or else behind it; none when the sample is a bare number.
  [[nodiscard]] const std::optional<std::string>& currencySymbol() const { return currencySymbol_; }
  /// ISO 4217 code of the symbol, from the locale data; none when the symbol belongs to several currencies or to none.
  [[nodiscard]] const std::optional<std::string>& currencyCode() const { return currencyCode_; }
  /// 0 before the amount, 1 behind it, 2 before with a blank between, 3 behind with a blank between.
  [[nodiscard]] std::int64_t currencySymbolPosition() const { return currencySymbolPosition_; }

  /// Where the amount stands in a sample: the whole, then its groups: blanks, digits and commas, the last of the points
  /// with digits, blanks. None when there is no amount.
  using Amount = std::array<platform::MatchRange, 5>;
  /// What the expression ([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*) matches, in a time that grows
  /// with the sample's length, and not with its square. Public so that the two can be compared.
  [[nodiscard]] static std::optional<Amount> amountIn(std::string_view sample);

 private:
  void parseCurrencyFormat(const std::string& format);

  std::int64_t currencyDigits_ = 2;
  std::optional<std::string> currencySymbol_ = "$";
  std::optional<std::string> currencyCode_ = "USD";
  std::int64_t currencySymbolPosition_ = 0;
};
