#pragma once

namespace conform {

class Copy;

/// Puts the children of every element into the published order. Whatever the order does not name, such as comments and
/// processing instructions, goes last. Makes date-times valid: those without a text are removed, and years get four
/// digits.
void correctOrder(Copy& copy);

}  // namespace conform
