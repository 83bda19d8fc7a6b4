#include <gtest/gtest.h>

#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"
#include "Tests/Support.h"

TEST(MSPECurrencyFormatMapper, TakesTheSampleApart) {
  using Text = std::optional<std::string>;
  const auto none = std::nullopt;
  const std::vector<std::tuple<int, std::string, std::int64_t, Text, Text, std::int64_t>> rows = {
      {__LINE__, "$ 1,234.56", 2, "$", "USD", 2},
      {__LINE__, "12€", 0, "€", "EUR", 1},
      {__LINE__, "kr\t1.23.4567", 4, "kr", "SEK", 2},
      {__LINE__, "￥5", 0, "￥", "JPY", 0},
      {__LINE__, "£5.00", 2, "£", none, 0},             // several currencies have it
      {__LINE__, "5.5\u00A0€", 1, "\u00A0€", none, 1},  // no blank to an expression over bytes
      {__LINE__, "by agreement", 2, "$", "USD", 0},
      {__LINE__, "€1</currency-format><currency-format>P2", 0, "P", "BWP", 0},
  };
  for (const auto& [line, sample, digits, symbol, code, position] : rows) {
    SCOPED_TRACE(line);
    const MSPEInfo info;
    const auto toc = parsed("<a><b><project><currency-format>" + sample + "</currency-format></project></b></a>");
    MSPEMapper mapper(nullptr, toc, {}, nullptr, info);
    const MSPECurrencyFormatMapper format(mapper);
    EXPECT_EQ(format.currencyDigits(), digits);
    EXPECT_EQ(format.currencySymbol(), symbol);
    EXPECT_EQ(format.currencyCode(), code);
    EXPECT_EQ(format.currencySymbolPosition(), position);
  }
}
