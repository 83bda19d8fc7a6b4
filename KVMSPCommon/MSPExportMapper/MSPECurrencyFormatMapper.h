#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/Text/RegularExpression.h"

/// Derives the project's currency settings from the sample amount in the table of contents (project/currency-format).
/// Only "." counts as the decimal point, for every currency:
///
///   "$1,234.56"   2 digits, "$", position 0
///   "12,50 €"  digits 0, since the comma is not a decimal point; "€", position 3
class MSPECurrencyFormatMapper final : public MSPEObjectMapperBase {
 public:
  /// Reads the sample. Without one, or when it has no number: 2 digits, "$", "USD", position 0.
  explicit MSPECurrencyFormatMapper(MSPEMapper& mapper);

  /// The number of digits after the decimal point.
  [[nodiscard]] std::int64_t currencyDigits() const { return currencyDigits_; }
  /// The text in front of the number; when there is none, the text behind it. None when the sample is a bare number.
  [[nodiscard]] const std::optional<std::string>& currencySymbol() const { return currencySymbol_; }
  /// ISO 4217 code of the symbol, from the locale data; none when the symbol belongs to several currencies or to none.
  [[nodiscard]] const std::optional<std::string>& currencyCode() const { return currencyCode_; }
  /// 0 before the amount, 1 behind it, 2 before with a blank between, 3 behind with a blank between.
  [[nodiscard]] std::int64_t currencySymbolPosition() const { return currencySymbolPosition_; }

  /// The position of the amount in a sample: the whole match, then its groups: blanks, digits and commas, the last
  /// point with its digits, blanks.
  using Amount = std::array<platform::MatchRange, 5>;
  /// The first match of the expression ([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*), found in linear
  /// time, which the expression itself does not guarantee; none when there is none. Public so that tests can compare
  /// the two.
  [[nodiscard]] static std::optional<Amount> amountIn(std::string_view sample);

 private:
  void parseCurrencyFormat(const std::string& format);

  std::int64_t currencyDigits_ = 2;
  std::optional<std::string> currencySymbol_ = "$";
  std::optional<std::string> currencyCode_ = "USD";
  std::int64_t currencySymbolPosition_ = 0;
};
