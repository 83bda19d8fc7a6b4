#pragma once

namespace conform {

class Copy;

/// `CurrencyCode` is never empty. The exporter leaves it so when the plan's symbol belongs to no currency or to several
/// of them. Then it is what the user said, else what the symbol usually stands for (£ and ¥), else the currency of the
/// machine's locale, else USD; and a warning says so.
void correctCurrency(Copy& copy);

}  // namespace conform
