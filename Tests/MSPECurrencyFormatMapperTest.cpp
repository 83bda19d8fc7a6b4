#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>

#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"
#include "Tests/Support.h"

/// Its bounds; of an empty one that it is empty.
static std::string shown(const platform::MatchRange& range) {
  return range.present() ? fmt::format("{}-{} ", range.start, range.end()) : "- ";
}

TEST(MSPECurrencyFormatMapper, FindsTheAmountThatTheExpressionMatches) {
  const platform::PosixRegularExpression expression("([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*)");
  std::mt19937 random(3);  // NOLINT: the same numbers each time
  for (int i = 0; i < 20000; ++i) {
    std::string sample;
    for (std::size_t length = random() % 12; length > 0; --length) sample += " \t\v05,,...x\xA0"[random() % 12];
    std::string expected, found;
    for (const auto& range : expression.match(sample)) expected += shown(range);
    if (const auto amount = MSPECurrencyFormatMapper::amountIn(sample)) {
      for (const auto& range : *amount) found += shown(range);
    }
    ASSERT_EQ(found, expected) << '"' << sample << '"';
  }
}

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
