#pragma once

namespace conform {

class Copy;

/// Lets the children of every element stand in the published order; what the order does not name, comments and
/// processing instructions among it, goes last. Date-time elements without a text are left out: they are not valid.
void correctOrder(Copy& copy);

}  // namespace conform
