#include <random>

#include "KVMSPCommon/MSPExportMapper/MSPECurrencyFormatMapper.h"
#include "Tests/Tables.h"

/// The start and the end of the range; "-" if there is none.
static std::string bounds(const platform::MatchRange& range) {
  return range.present() ? fmt::format("{}-{} ", range.start, range.end()) : "- ";
}

TEST(MSPECurrencyFormatMapper, FindsTheAmountThatTheExpressionMatches) {
  const platform::PosixRegularExpression expression("([[:space:]]*)([[:digit:],]+)([.][[:digit:]]+)*([[:space:]]*)");
  std::mt19937 random(3);  // NOLINT: the same numbers each time
  for (int i = 0; i < 20000; ++i) {
    std::string sample;
    for (std::size_t length = random() % 12; length > 0; --length) sample += " \t\v05,,...x\xA0"[random() % 12];
    std::string expected, found;
    for (const auto& range : expression.match(sample)) expected += bounds(range);
    if (const auto amount = MSPECurrencyFormatMapper::amountIn(sample)) {
      for (const auto& range : *amount) found += bounds(range);
    }
    ASSERT_EQ(found, expected) << '"' << sample << '"';
  }
}

TEST(MSPECurrencyFormatMapper, TakesTheSampleApart) {
  const auto takenApart = [](std::string_view sample) {  // digits, symbol, code, position
    const MSPEInfo info;
    const auto toc =
        parsed(fmt::format("<a><b><project><currency-format>{}</currency-format></project></b></a>", sample));
    MSPEMapper mapper(nullptr, toc, {}, nullptr, info);
    const MSPECurrencyFormatMapper format(mapper);
    return fmt::format("{} {} {} {}", format.currencyDigits(), shown(format.currencySymbol()),
                       shown(format.currencyCode()), format.currencySymbolPosition());
  };
  expectOutcomes({
      {__LINE__, takenApart, "$ 1,234.56", "2 $ USD 2"},
      {__LINE__, takenApart, "12€", "0 € EUR 1"},
      {__LINE__, takenApart, "kr\t1.23.4567", "4 kr SEK 2"},
      {__LINE__, takenApart, "￥5", "0 ￥ JPY 0"},
      {__LINE__, takenApart, "£5.00", "2 £ none 0"},             // several currencies have this symbol
      {__LINE__, takenApart, "5.5\u00A0€", "1 \u00A0€ none 1"},  // a no-break space is no blank
      {__LINE__, takenApart, "by agreement", "2 $ USD 0"},
      {__LINE__, takenApart, "€1</currency-format><currency-format>P2", "0 P BWP 0"},
  });
}
