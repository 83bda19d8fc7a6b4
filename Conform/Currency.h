#pragma once

namespace conform {

class Copy;

/// Sets the `CurrencyCode` when the plan's symbol belongs to no currency or to several. A symbol that is itself a code,
/// or that only one currency has, decides. Otherwise it becomes the first of these that exists, with a warning: the
/// user's choice, the currency that the symbol usually means ($, €, £ and ¥), the currency of the machine's locale if
/// it has this symbol, the code that the exporter wrote, USD. Without the bundle, only an empty code is set: another
/// one may have been chosen before.
void correctCurrency(Copy& copy);

}  // namespace conform
