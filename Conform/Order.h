#pragma once

namespace conform {

class Copy;

/// Puts the children of every element into the published order. Whatever the order does not name, such as comments and
/// processing instructions, goes last. Date-time elements without a text are removed, since they are not valid.
void correctOrder(Copy& copy);

}  // namespace conform
