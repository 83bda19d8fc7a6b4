#pragma once

namespace conform {

class Copy;

/// Fills an empty `CurrencyCode`. The exporter leaves it empty when the plan's symbol belongs to no currency or to
/// several. It becomes the first of these that exists, with a warning: the user's choice, the currency that the symbol
/// usually means (£ and ¥), the currency of the machine's locale, USD.
void correctCurrency(Copy& copy);

}  // namespace conform
